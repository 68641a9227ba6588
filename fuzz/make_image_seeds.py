"""Makes fuzz/corpus/Image: one small picture in every format that images are read from, which the tests compare pixel by
pixel. Run by hand; it needs ImageMagick:  python3 fuzz/make_image_seeds.py

At (x, y) the picture of 8 by 3 pixels is red 30 x + 5, green 100 y + 20, blue 25 (x + y) + 3, alpha 255 - 30 x - 10 y.
Grey pictures hold its red.
"""

import pathlib
import struct
import subprocess

folder = pathlib.Path(__file__).parent / "corpus/Image"
PIXELS = [(30 * x + 5, 100 * y + 20, 25 * (x + y) + 3, 255 - 30 * x - 10 * y) for y in range(3) for x in range(8)]
CHANNELS = {"rgb": (0, 1, 2), "rgba": (0, 1, 2, 3), "gray": (0,), "graya": (0, 3)}
LOWER = 0x5A  # the lower byte of channels of 16 bits

# What ImageMagick is given and how it is to write each file.
FILES = {
    "rgb.png": ("rgb", "-define png:color-type=2"),
    "rgb16.png": ("rgb", "-define png:color-type=2 -define png:bit-depth=16"),
    "palette.png": ("rgb", "-define png:color-type=3 -define png:bit-depth=8"),
    "interlaced.png": ("rgba", "-define png:color-type=6 -interlace PNG"),
    "grey.png": ("gray", "-define png:color-type=0 -define png:bit-depth=8"),
    "greyalpha.png": ("graya", "-define png:color-type=4 -define png:bit-depth=8"),
    "baseline.jpg": ("rgb", "-quality 100 -sampling-factor 1x1"),
    "progressive.jpg": ("rgb", "-quality 100 -sampling-factor 1x1 -interlace JPEG"),
    "grey.jpg": ("gray", "-quality 100"),
    "rgb.bmp": ("rgb", "-type TrueColor"),
    "palette.bmp": ("rgb", "-type Palette -compress None"),
    "rgba.bmp": ("rgba", ""),
    "rgb.gif": ("rgb", ""),
    "rgb.psd": ("rgb", "-compress RLE"),
    "rgba.psd": ("rgba", "-compress None"),
    "runs.tga": ("rgb", "-compress RLE -flip -orient BottomLeft"),
    "rgba.tga": ("rgba", "-compress None -orient TopLeft"),
    "grey.tga": ("gray", "-compress None -orient TopLeft"),
    "grey.pgm": ("gray", ""),
    "rgb16.ppm": ("rgb", ""),
    "rgb.hdr": ("rgb", ""),
}


def channels(kind, depth):
    values = [pixel[i] for pixel in PIXELS for i in CHANNELS[kind]]
    return bytes(values) if depth == 8 else b"".join(bytes([value, LOWER]) for value in values)


def softimage():
    """Softimage PIC, which no installed program writes: colours one by one, alpha as literal runs."""
    head = b"\x53\x80\xF6\x34" + struct.pack(">f", 1.0) + bytes(80) + b"PICT" + struct.pack(">HHfHH", 8, 3, 1.0, 3, 0)
    packets = bytes([1, 8, 0, 0xE0]) + bytes([0, 8, 2, 0x10])
    rows = [PIXELS[8 * y:8 * y + 8] for y in range(3)]
    return head + packets + b"".join(
        b"".join(bytes(pixel[:3]) for pixel in row) + bytes([7]) + bytes(pixel[3] for pixel in row) for row in rows)


folder.mkdir(exist_ok=True)
for name, (kind, options) in FILES.items():
    depth = 16 if "16" in name else 8
    subprocess.run(["convert", "-size", "8x3", "-depth", str(depth), "-endian", "MSB", f"{kind}:-", *options.split(),
                    "-strip", folder / name], input=channels(kind, depth), check=True)
(folder / "rgba.pic").write_bytes(softimage())
