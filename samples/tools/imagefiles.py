"""Writers for the picture formats of the sample: GIF, indexed PNG, ACT palettes.

A picture is (width, height, pixels, palette): pixels a bytes-like of palette indexes, row by row,
palette a list of (r, g, b). Index 0 is the transparent colour of every sprite.
"""
import struct
import zlib


def _lzw(pixels, bits):
    """GIF's variable-width LZW, as sub-blocks."""
    clear, end = 1 << bits, (1 << bits) + 1
    out, acc, fill = bytearray(), 0, 0
    width = bits + 1
    table, free = {}, end + 1

    def put(code):
        nonlocal acc, fill
        acc |= code << fill
        fill += width
        while fill >= 8:
            out.append(acc & 255)
            acc >>= 8
            fill -= 8

    put(clear)
    prefix = -1
    for pixel in pixels:
        if prefix < 0:
            prefix = pixel
            continue
        key = (prefix << 8) | pixel
        code = table.get(key)
        if code is not None:
            prefix = code
            continue
        put(prefix)
        if free < 4096:
            table[key] = free
            if free == 1 << width:
                width += 1
            free += 1
        else:
            put(clear)
            table, free, width = {}, end + 1, bits + 1
        prefix = pixel
    put(prefix)
    put(end)
    if fill:
        out.append(acc & 255)
    blocks = bytearray([bits])
    for i in range(0, len(out), 255):
        part = out[i:i + 255]
        blocks.append(len(part))
        blocks += part
    blocks.append(0)
    return bytes(blocks)


def _palette_bits(palette):
    bits = 2
    while (1 << bits) < len(palette):
        bits += 1
    return bits


def _table(palette, bits):
    flat = bytearray()
    for r, g, b in palette:
        flat += bytes((r, g, b))
    # Padding repeats no used colour: a pad equal to entry 0 would be harmless, but reads as a mistake.
    for i in range((1 << bits) - len(palette)):
        flat += bytes((1, 1, i & 255))
    return bytes(flat)


def _interlaced(width, height, pixels):
    rows = []
    for start, step in ((0, 8), (4, 8), (2, 4), (1, 2)):
        rows += range(start, height, step)
    return b"".join(bytes(pixels[y * width:(y + 1) * width]) for y in rows)


def gif_bytes(frames, palette, interlace=False, transparent=True, loop=None):
    """frames: [(width, height, pixels, delay in hundredths)]. All frames share the palette."""
    bits = _palette_bits(palette)
    width, height = frames[0][0], frames[0][1]
    out = bytearray(b"GIF89a" if transparent or len(frames) > 1 else b"GIF87a")
    out += struct.pack("<HHBBB", width, height, 0x80 | (7 << 4) | (bits - 1), 0, 0)
    out += _table(palette, bits)
    if len(frames) > 1 and loop is not None:
        out += b"\x21\xff\x0bNETSCAPE2.0\x03\x01" + struct.pack("<H", loop) + b"\x00"
    for w, h, pixels, delay in frames:
        if transparent or len(frames) > 1:
            out += b"\x21\xf9\x04" + struct.pack("<BHB", 0x04 | (1 if transparent else 0), delay, 0) + b"\x00"
        out += b"\x2c" + struct.pack("<HHHHB", 0, 0, w, h, 0x40 if interlace else 0)
        out += _lzw(_interlaced(w, h, pixels) if interlace else pixels, bits)
    out += b"\x3b"
    return bytes(out)


def gif(picture, interlace=False, transparent=True):
    w, h, pixels, palette = picture
    return gif_bytes([(w, h, pixels, 0)], palette, interlace, transparent)


def png(picture, transparent=True):
    w, h, pixels, palette = picture

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    raw = b"".join(b"\x00" + bytes(pixels[y * w:(y + 1) * w]) for y in range(h))
    out = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 3, 0, 0, 0))
    out += chunk(b"PLTE", b"".join(bytes(c) for c in palette))
    if transparent:
        out += chunk(b"tRNS", b"\x00")
    return out + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")


def act(palette, long_form=False):
    """A Photoshop colour table: 256 triples, and in the long form the count and the clear index."""
    flat = b"".join(bytes(c) for c in palette) + bytes(768 - 3 * len(palette))
    return flat + (struct.pack(">HH", len(palette), 0) if long_form else b"")
