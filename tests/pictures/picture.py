"""Pictures: arrays of colours, the rows from the top; a colour is a number, 0xRRGGBB."""
import numpy
import PIL.Image

KINDS = "RGB", "P"  # of images that are read: 8 bits a channel, or indexed


def channels(colours):
    """Red, green and blue, in a new last axis."""
    return numpy.stack([colours >> 16, colours >> 8 & 0xFF, colours & 0xFF], axis=-1)


def joined(rgb):
    """The colours of red, green and blue in the last axis."""
    return rgb[..., 0] << 16 | rgb[..., 1] << 8 | rgb[..., 2]


def read(file):
    """A PNG or PPM file, or a stream of its bytes."""
    with PIL.Image.open(file) as image:
        if image.mode not in KINDS:
            raise ValueError(f"an image of another kind: {image.mode}")
        return joined(numpy.array(image.convert("RGB"), numpy.int32))


def write(file, picture):
    """Writes a picture of at most 256 colours, so that the file is small."""
    palette, indices = numpy.unique(picture, return_inverse=True)
    if len(palette) > 256:
        raise ValueError(f"{len(palette)} colours")
    image = PIL.Image.fromarray(indices.reshape(picture.shape).astype(numpy.uint8), "P")
    image.putpalette(channels(palette).astype(numpy.uint8).tobytes())
    image.save(file, "png", optimize=True)


def around(picture, reach, outside):
    """The picture moved by up to `reach` pixels on both axes, in every way; `outside` comes in at its edges."""
    height, width = picture.shape
    padded = numpy.pad(picture, reach, constant_values=outside)
    for below in range(2 * reach + 1):
        for beside in range(2 * reach + 1):
            yield padded[below:below + height, beside:beside + width]
