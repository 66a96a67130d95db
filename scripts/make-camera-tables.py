#!/usr/bin/env python3
"""Makes src/resources/Data/cameras.txt and lensid.txt from three open databases.

Needs the Debian packages liblensfun-data-v1 (crop factors) and libimage-exiftool-perl (lens
identifiers), and src/util/camera_specs.cc (widths of the sensors of compact cameras) of the Debian
source package colmap, which `apt-get source colmap` fetches.
Usage: scripts/make-camera-tables.py CAMERA_SPECS   (rewrites both files)
"""
import glob
import math
import os
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

FOLDER = os.path.join(os.path.dirname(__file__), "..", "src", "resources", "Data")
LENSFUN = "/usr/share/lensfun/version_1/*.xml"

# Makers as they stand in EXIF; a brand matches where it occurs in the Make text, case by case,
# so one maker has a line for each way in which its cameras spell it.
SPELLINGS = {
    "Asahi Optical": ["Asahi Optical"],
    "Casio": ["CASIO"],
    "Eastman Kodak": ["KODAK", "Kodak"],
    "Fujifilm": ["FUJIFILM"],
    "Huawei": ["HUAWEI", "Huawei"],
    "Kodak": ["KODAK", "Kodak"],
    "Konica Minolta": ["KONICA MINOLTA", "Konica Minolta", "Minolta", "MINOLTA"],
    "Leica": ["LEICA", "Leica"],
    "LG Mobile": ["LG"],
    "Minolta": ["Minolta", "MINOLTA"],
    "Nikon": ["NIKON"],
    "Olympus": ["OLYMPUS"],
    "Panasonic": ["Panasonic"],
    "Pentax": ["PENTAX", "Pentax", "RICOH"],
    "Ricoh": ["RICOH"],
    "Samsung": ["SAMSUNG", "Samsung"],
    "SEIKO EPSON": ["SEIKO EPSON"],
    "Sigma": ["SIGMA", "Sigma"],
    "Sony": ["SONY", "Sony"],
}
# What a model text may begin with and a short name leaves out.
PREFIXES = ["Asahi Optical", "Canon", "Casio", "Eastman Kodak", "Fujifilm", "Kodak",
            "Konica Minolta", "Leica", "Minolta", "Nikon", "Olympus", "Panasonic", "Pentax",
            "Ricoh", "Samsung", "Sigma", "Sony"]
# Not makers of cameras with EXIF.
NO_EXIF = {"Generic", "KMZ", "Rolleiflex"}


def clean(text):
    return re.sub(r"[;#\s]+", " ", text).strip()


def brands(maker):
    for known, spellings in SPELLINGS.items():
        if maker.lower().startswith(known.lower()):
            return spellings
    return [maker]


def short_name(model):
    for prefix in PREFIXES:
        if model.lower().startswith(prefix.lower() + " "):
            return model[len(prefix) + 1:]
    return model


# Model names in CAMERA_SPECS are in lower case without blanks and dashes. For these series the text
# of EXIF is known by rule; names of others would be guesses.
SERIES = {
    "canon": (r"(powershot)(.+)", "Canon", "PowerShot "),
    "casio": (r"(ex)([a-z]+\d.*)", "CASIO", "EX-"),
    "fujifilm": (r"(finepix)(.+)", "FUJIFILM", "FinePix "),
    "nikon": (r"(coolpix)(.+)", "NIKON", "COOLPIX "),
    "olympus": (r"(stylus)(\d+)", "OLYMPUS", "STYLUS"),
    "panasonic": (r"(dmc)(.+)", "Panasonic", "DMC-"),
    "pentax": (r"(optio)(.+)", "PENTAX", "Optio "),
    "ricoh": (r"(caplio)(.+)", "RICOH", "Caplio "),
    "samsung": (r"()((?:wb|st|pl|es|nx|ex|mv|dv|hz|tl|sl)\d.*)", "SAMSUNG", ""),
    "sony": (r"(dsc)(.+)", "SONY", "DSC-"),
}


def series_name(rest):
    """w110 becomes W110, sx210is becomes SX210 IS."""
    match = re.fullmatch(r"(.*\d)(is|hs|exr|exrs|fd|ti|xs|af)", rest)
    return f"{match[1].upper()} {match[2].upper()}" if match else rest.upper()


def compact_rows(path):
    """Widths alone are known: sensors of compacts and of Four Thirds are 4 by 3, others 3 by 2."""
    make = None
    with open(path, encoding="utf-8") as file:
        for line in file:
            if match := re.search(r'specs\["(.+?)"\]', line):
                make = match[1]
            match = re.search(r'emplace_back\("(.+?)", ([\d.]+)f\)', line)
            if not match or make not in SERIES:
                continue
            pattern, brand, prefix = SERIES[make]
            name, width = re.fullmatch(pattern, match[1]), float(match[2])
            if not name or width <= 0:
                continue
            ratio = 4 / 3 if width < 14 or 17 < width < 18.5 else 3 / 2
            scale = math.hypot(36, 24) / math.hypot(width, width / ratio)
            yield brand, prefix + series_name(name[2]), round(scale, 3)


def plain(text):
    return re.sub(r"[^a-z0-9]", "", text.lower())


def camera_rows():
    rows = {}
    for name in sorted(glob.glob(LENSFUN)):
        for camera in ElementTree.parse(name).getroot().findall("camera"):
            maker = next(e.text for e in camera.findall("maker") if not e.get("lang"))
            model = next(e.text for e in camera.findall("model") if not e.get("lang"))
            crop = camera.findtext("cropfactor")
            if maker in NO_EXIF or "film" in model or not crop:
                continue
            for brand in brands(clean(maker)):
                rows.setdefault((brand, short_name(clean(model))), float(crop))
    known = {(brand, plain(model)) for brand, model in rows}
    for brand, model, crop in compact_rows(sys.argv[1]):
        if (brand, plain(model)) not in known:
            rows.setdefault((brand, model), crop)
    # A name may occur inside a longer one, so longer names come first.
    return sorted(((b, m, c) for (b, m), c in rows.items()),
                  key=lambda row: (row[0].lower(), row[0], -len(row[1]), row[1]))


def exiftool_hash(module, name):
    code = (f"use Image::ExifTool; use Image::ExifTool::{module}; binmode STDOUT, ':utf8';"
            f"for (sort keys %Image::ExifTool::{module}::{name})"
            f"{{ my $v = $Image::ExifTool::{module}::{name}{{$_}};"
            f"$v =~ s/\\s+/ /g; print \"$_\\t$v\\n\" unless ref $v; }}")
    output = subprocess.run(["perl", "-e", code], check=True, capture_output=True).stdout
    return [line.split("\t", 1) for line in output.decode("utf-8", "replace").splitlines()]


def number(value):
    return f"{value:.1f}".removesuffix(".0")


def lens_type(name):
    if re.search(r"fish-?eye", name, re.I):
        return 1
    if re.search(r"\b(TS-E|PC-E|PC|tilt|shift)\b", name, re.I):
        return 2
    return 0


def nikon_rows():
    """The identifier's bytes are those of the maker note: code, F stops, shortest and longest
    focal length (5 mm times 2 to the power n/24), their largest apertures (2 to the n/24)."""
    for key, name in exiftool_hash("Nikon", "nikonLensIDs"):
        match = re.match(r"([0-9A-F]{2}(?: [0-9A-F]{2}){7})", key)
        if not match:
            continue
        code, _, short, long, wide, tele, _, _ = (int(b, 16) for b in match[1].split())
        if short == 0 or wide == 0:
            continue
        focals = [number(round(5 * 2 ** (v / 24))) for v in (short, long)]
        apertures = [number(2 ** (v / 24)) for v in (wide, tele)]
        yield " ".join([*focals, str(code), *apertures]), "NIKON CORPORATION", name


def canon_rows():
    """Canon's notes hold the code alone; focal lengths and apertures stand in the name."""
    pattern = re.compile(r"\b([\d.]+)(?:-([\d.]+))?mm f/?([\d.]+)(?:-([\d.]+))?", re.I)
    for key, name in exiftool_hash("Canon", "canonLensTypes"):
        code = key.split(".")[0]
        match = pattern.search(name)
        if not match or not code.isdigit() or code in ("0", "65535"):
            continue
        short, long, wide, tele = (match[1], match[2] or match[1], match[3], match[4] or match[3])
        values = [number(float(v.rstrip("."))) for v in (short, long, wide, tele)]
        yield " ".join([values[0], values[1], code, values[2], values[3]]), "Canon", name


def lens_rows():
    rows = {}
    for make_rows in (nikon_rows, canon_rows):
        for identifier, brand, name in make_rows():
            rows.setdefault((identifier, brand, clean(name)), lens_type(name))
    key = lambda row: ([float(v) for v in row[0][0].split()], row[0][1], row[0][2])
    return sorted(rows.items(), key=key)


def write(name, header, lines):
    with open(os.path.join(FOLDER, name), "w", encoding="utf-8", newline="\n") as file:
        file.write("".join(f"# {line}\n" for line in header))
        file.write("".join(f"{line}\n" for line in lines))
    print(f"{name}: {len(lines)} rows")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    diagonal = math.hypot(36, 24)
    assert abs(diagonal - 43.266615305567875) < 1e-12
    write("cameras.txt", [
        "Brand as in EXIF; short name of the camera; scale of its sensor to 24 x 36 mm film.",
        "sensor_scale = sqrt(36.0^2 + 24.0^2) / sqrt(sensor_width^2 + sensor_height^2)",
        "The first row that matches counts: longer names stand before those they contain.",
        "Crop factors of the Lensfun database, CC BY-SA 3.0, and of COLMAP's sensor widths, BSD;",
        "made by scripts/make-camera-tables.py",
    ], [f"{brand};{model};{crop:g}" for brand, model, crop in camera_rows()])
    write("lensid.txt", [
        "Shortest and longest focal length, lens code, two apertures; brand; lens; type",
        "Type: 0 standard (may be left out), 1 fisheye, 2 tilt/shift",
        "Lens identifiers of ExifTool (Artistic or GPL); made by scripts/make-camera-tables.py",
    ], [f"{identifier};{brand};{name}" + (f";{kind}" if kind else "")
        for (identifier, brand, name), kind in lens_rows()])


main()
