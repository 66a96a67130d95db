#!/usr/bin/env python3
"""Makes src/resources/Data/cameras.txt and lensid.txt from two open databases.

Needs the Debian packages liblensfun-data-v1 (crop factors) and libimage-exiftool-perl (lens
identifiers). Usage: scripts/make-camera-tables.py   (rewrites both files)
"""
import glob
import math
import os
import re
import subprocess
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
    diagonal = math.hypot(36, 24)
    assert abs(diagonal - 43.266615305567875) < 1e-12
    write("cameras.txt", [
        "Brand as in EXIF; short name of the camera; scale of its sensor to 24 x 36 mm film.",
        "sensor_scale = sqrt(36.0^2 + 24.0^2) / sqrt(sensor_width^2 + sensor_height^2)",
        "The first row that matches counts: longer names stand before those they contain.",
        "Crop factors of the Lensfun database, CC BY-SA 3.0; made by scripts/make-camera-tables.py",
    ], [f"{brand};{model};{crop:g}" for brand, model, crop in camera_rows()])
    write("lensid.txt", [
        "Shortest and longest focal length, lens code, two apertures; brand; lens; type",
        "Type: 0 standard (may be left out), 1 fisheye, 2 tilt/shift",
        "Lens identifiers of ExifTool (Artistic or GPL); made by scripts/make-camera-tables.py",
    ], [f"{identifier};{brand};{name}" + (f";{kind}" if kind else "")
        for (identifier, brand, name), kind in lens_rows()])


main()
