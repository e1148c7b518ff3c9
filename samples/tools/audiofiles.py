"""Writers for the sample's sounds: PCM WAV, with a loop if wanted, and the old .bor ADPCM.

Samples are floats from -1 to 1.
"""
import struct

STEPS = (7, 8, 9, 10, 11, 12, 13, 14, 16, 17, 19, 21, 23, 25, 28, 31, 34, 37, 41, 45, 50, 55, 60, 66, 73, 80, 88, 97, 107, 118,
         130, 143, 157, 173, 190, 209, 230, 253, 279, 307, 337, 371, 408, 449, 494, 544, 598, 658, 724, 796, 876, 963, 1060,
         1166, 1282, 1411, 1552, 1707, 1878, 2066, 2272, 2499, 2749, 3024, 3327, 3660, 4026, 4428, 4871, 5358, 5894, 6484,
         7132, 7845, 8630, 9493, 10442, 11487, 12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767)
TURN = (-1, -1, -1, -1, 2, 4, 6, 8)


def wav(channels, rate, bits=16, loop=None):
    """channels: one list of samples, or two for stereo. loop: first and last frame, both played."""
    frames = len(channels[0])
    data = bytearray()
    dither = 12345
    for i in range(frames):
        for ch in channels:
            v = max(-1.0, min(1.0, ch[i]))
            if bits == 8:
                # A little noise turns the steps of eight bits into hiss.
                dither = (dither * 1103515245 + 12345) & 0x7FFFFFFF
                data.append(max(0, min(255, int(128 + v * 126 + (dither / 0x7FFFFFFF - 0.5)))))
            else:
                data += struct.pack("<h", int(v * 32767))
    if len(data) & 1:
        data.append(128)
    n = len(channels)
    size = n * bits // 8
    chunks = b"fmt " + struct.pack("<IHHIIHH", 16, 1, n, rate, rate * size, size, bits)
    if loop:
        body = struct.pack("<9I", 0, 0, 1000000000 // rate, 60, 0, 0, 0, 1, 0)
        body += struct.pack("<6I", 0, 0, loop[0], loop[1], 0, 0)
        chunks += b"smpl" + struct.pack("<I", len(body)) + body
    chunks += b"data" + struct.pack("<I", len(data)) + bytes(data)
    return b"RIFF" + struct.pack("<I", 4 + len(chunks)) + b"WAVE" + chunks


def bor(samples, title, artist):
    """22,050 Hz mono: a header of 160 bytes, then one stream of nibbles, the high one first."""
    header = (b"BOR music" + bytes(16))[:16] + title.encode("ascii")[:64].ljust(64, b"\0") + artist.encode("ascii")[:64].ljust(64, b"\0")
    header += struct.pack("<IIII", 0x00010000, 22050, 1, 160)
    value = index = 0
    out = bytearray(header[:160])
    half = -1
    for s in samples:
        delta = int(max(-1.0, min(1.0, s)) * 32767) - value
        nibble = 0
        if delta < 0:
            nibble, delta = 8, -delta
        step = STEPS[index]
        diff = step >> 3
        if delta >= step:
            nibble |= 4
            delta -= step
            diff += step
        if delta >= step >> 1:
            nibble |= 2
            delta -= step >> 1
            diff += step >> 1
        if delta >= step >> 2:
            nibble |= 1
            diff += step >> 2
        value = max(-32768, min(32767, value - diff if nibble & 8 else value + diff))
        index = max(0, min(88, index + TURN[nibble & 7]))
        if half < 0:
            half = nibble << 4
        else:
            out.append(half | nibble)
            half = -1
    if half >= 0:
        out.append(half)
    return bytes(out)
