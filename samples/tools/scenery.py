"""Which paintings become which files, with how many colours and in which format."""
import harbour
import pictures
import street
from imagefiles import gif, gif_bytes, png
from painting import palette_of, reduce


def paint(save):
    def put(path, painting, colours, see_through=False, interlace=False, dither=12.0):
        picture = reduce(painting, palette_of([painting], colours), dither)
        if path.endswith(".png"):
            save(path, png(picture, see_through))
        else:
            save(path, gif(picture, interlace, see_through))

    put("bgs/title.gif", pictures.title(), 128, interlace=True)
    put("bgs/select.png", pictures.select(), 96)
    put("bgs/loading.gif", pictures.loading(), 64)
    put("bgs/complete.gif", pictures.complete(), 96)

    put("bgs/row/sky.gif", street.sky(), 64)
    put("bgs/row/towers.gif", street.towers(), 32, True)
    put("bgs/row/roofs.gif", street.roofs(), 32, True)
    put("bgs/row/street_a.gif", street.street_a(), 96, True)
    put("bgs/row/street_b.gif", street.street_b(), 96, True)
    put("bgs/row/street_c.gif", street.street_c(), 96, True)
    put("bgs/row/lamp.gif", street.lamp(), 24, True, dither=6)
    put("bgs/row/front.png", street.front(), 8, True, dither=0)

    put("bgs/docks/sky.gif", harbour.sky(), 64)
    put("bgs/docks/bank.gif", harbour.bank(), 32, True)
    put("bgs/docks/water.gif", harbour.water(), 48)
    put("bgs/docks/quay_a.gif", harbour.quay_a(), 96, True)
    put("bgs/docks/quay_b.gif", harbour.quay_b(), 96, True)
    put("bgs/docks/quay_c.gif", harbour.quay_c(), 96, True)
    put("bgs/docks/ferry.gif", harbour.ferry(), 96, True)
    put("bgs/docks/bollard.gif", harbour.bollard(), 24, True, dither=6)
    put("bgs/docks/front.png", harbour.front(), 12, True, dither=0)

    put("scenes/intro1.gif", pictures.intro1(), 64)
    put("scenes/intro2.gif", pictures.intro2(), 80)
    frames = [pictures.intro3(i, 6) for i in range(6)]
    palette = palette_of(frames, 96)
    small = [reduce(f, palette, 6.0) for f in frames]
    save("scenes/intro3.gif", gif_bytes([(w, h, px, 14) for w, h, px, _ in small], palette, transparent=False, loop=0))
    put("scenes/intro4.gif", pictures.intro4(), 64, dither=8)
    put("scenes/bridge.gif", pictures.bridge(), 64, interlace=True)
    put("scenes/ending1.gif", pictures.ending1(), 112)
    put("scenes/ending2.gif", pictures.ending2(), 64)
