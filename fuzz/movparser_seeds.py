#!/usr/bin/env python3
"""Makes the seeds of fuzz_movparser: small movies by ffmpeg with their media cut away, and movies
of atoms that ffmpeg does not write. Usage: movparser_seeds.py FOLDER"""
import os
import struct
import subprocess
import sys
import tempfile

MOVIES = {
    "h264_aac.mp4": "-c:v libx264 -c:a aac",
    "h264_first.mp4": "-c:v libx264 -an -movflags faststart",
    "hevc.mp4": "-c:v libx265 -x265-params log-level=none -tag:v hvc1 -an",
    "prores_pcm.mov": "-c:v prores_ks -c:a pcm_s24le",
    "timecode.mov": "-c:v libx264 -c:a aac -timecode 01:00:00:00",
    "chapters.mp4": "-c:v libx264 -an -chapters",
    "pcm_float.mov": "-vn -c:a pcm_f64le -ar 96000",
}


def atom(kind, *parts):
    body = b"".join(parts)
    return struct.pack(">I4s", 8 + len(body), kind) + body


def full(kind, *parts):
    return atom(kind, bytes(4), *parts)


def without_media(data):
    """Leaves only the header of mdat, so that a seed is mostly tables."""
    result, at = b"", 0
    while at + 8 <= len(data):
        size, kind = struct.unpack_from(">I4s", data, at)
        if size < 8:
            break
        result += atom(b"mdat") if kind == b"mdat" else data[at:at + size]
        at += size
    return result


def by_ffmpeg(name, options, folder):
    path = os.path.join(folder, name)
    inputs = "-f lavfi -i testsrc2=size=64x32:rate=10:duration=0.6 -f lavfi -i sine=duration=0.6"
    if options.endswith("-chapters"):
        chapters = os.path.join(folder, "chapters.txt")
        with open(chapters, "w", encoding="ascii") as file:
            file.write(";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/10\nSTART=0\nEND=3\ntitle=One\n")
        inputs += f" -i {chapters} -map_metadata 2 -map_chapters 2"
        options = options.replace(" -chapters", "")
    subprocess.run(f"ffmpeg -v error -y {inputs} {options} {path}".split(), check=True)
    with open(path, "rb") as file:
        return without_media(file.read())


def track(description_children, *track_children, handler=b"vide", name=b"\x05Orvex"):
    entry = atom(b"avc1", bytes(6), b"\0\1", bytes(16), struct.pack(">HH", 64, 32), bytes(50),
                 *description_children)
    table = atom(b"stbl", full(b"stsd", struct.pack(">I", 1), entry),
                 full(b"stts", struct.pack(">III", 1, 3, 100)),
                 full(b"ctts", struct.pack(">IIi", 1, 3, -5)),
                 full(b"stss", struct.pack(">II", 1, 1)),
                 full(b"stsz", struct.pack(">IIIII", 0, 3, 1, 2, 3)),
                 full(b"stsc", struct.pack(">IIII", 1, 1, 3, 1)),
                 full(b"co64", struct.pack(">IQ", 1, 1 << 33)), full(b"sdtp", b"\1\2\3"))
    minf = atom(b"minf", full(b"vmhd", bytes(8)), table)
    media = atom(b"mdia", full(b"mdhd", bytes(8), struct.pack(">II", 1000, 300), bytes(4)),
                 full(b"hdlr", b"mhlr", handler, bytes(12), name), minf)
    edits = atom(b"edts", full(b"elst", struct.pack(">IIiI", 1, 300, 0, 65536)))
    return atom(b"trak", full(b"tkhd", bytes(80)), media, edits, *track_children)


def by_hand():
    sphere = atom(b"sv3d", full(b"svhd", b"tool\0"),
                  atom(b"proj", full(b"prhd", struct.pack(">iii", 0x5A8000, -0x5A8000, 0)),
                       full(b"equi", bytes(16))))
    cube = atom(b"sv3d", atom(b"proj", full(b"cbmp", bytes(8))))
    xml = (b"<?xml?><GSpherical:StitchingSoftware>s</GSpherical:StitchingSoftware>"
           b"<GSpherical:StereoMode>top-bottom</GSpherical:StereoMode>"
           b"<GSpherical:SourceCount>6</GSpherical:SourceCount>")
    meta = atom(b"meta", bytes(4), atom(b"hdlr", bytes(8), b"mdir", bytes(13)),
                atom(b"ilst", atom(b"\xa9too", atom(b"data", struct.pack(">II", 1, 0), b"Orvex"))))
    camera = atom(b"udta", atom(b"FRMW", b"1.0"), atom(b"CAMR", b"\1\2"), atom(b"STNG", bytes(20)),
                  atom(b"Lnsd", b"LNS"), atom(b"VFD\0", b"W"), atom(b"RGUI", bytes(16)),
                  atom(b"RGSI", bytes(16)), atom(b"TGMK", struct.pack(">III", 2, 5, 1500)),
                  atom(b"UMID", b"\xff"), meta, bytes(4))
    return {
        "spherical.mp4": atom(b"ftyp", b"isom") + atom(
            b"moov", full(b"mvhd", bytes(96)), track([full(b"st3d", b"\2"), sphere])),
        "cube.mp4": atom(b"moov", track([cube, bytes(4)])),
        "legacy.mp4": atom(b"moov", track([], atom(b"uuid", bytes(16), xml))),
        "camera.mp4": atom(b"free", bytes(3)) + atom(
            b"moov", track([], atom(b"tref", atom(b"tmcd", bytes(8))), name=b"Name\0"), camera),
    }


def main():
    target = sys.argv[1]
    os.makedirs(target, exist_ok=True)
    seeds = by_hand()
    with tempfile.TemporaryDirectory() as folder:
        for name, options in MOVIES.items():
            seeds[name] = by_ffmpeg(name, options, folder)
    for name, data in seeds.items():
        with open(os.path.join(target, name), "wb") as file:
            file.write(data)


main()
