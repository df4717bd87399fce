"""Pictures for the documents: cut to what is to be seen, and looked over before they are kept."""

from pathlib import Path

from picture import Picture

IMAGES = Path(__file__).resolve().parent.parent.parent / "docs/images"

MARGIN = 12

# Samples come fast, so that the charts are full soon.
PREFERENCES = {"refreshInterval": 0.25}

# A picture of something has more colours than a bare screen, and a document's is soon there.
FEWEST_COLOURS, MOST_BYTES = 60, 200_000


def with_end_of_bar(screen, bar, box):
    """The part of a screen with a box, and the end of the bar that the box is beside."""
    return screen.crop(screen.box._replace(
        left=max(box.left - MARGIN, 0),
        top=max(min(bar.top, box.top - MARGIN), 0),
        bottom=min(max(bar.bottom, box.bottom + MARGIN), screen.height)))


def save(picture: Picture, name):
    """Writes docs/images/NAME.png; raises ValueError for what would be no picture."""
    channels = picture.pixels
    colours = len(set(zip(channels[0::3], channels[1::3], channels[2::3])))
    if colours < FEWEST_COLOURS:
        raise ValueError(f"{name}: {colours} colours, so there is nothing to see")
    path = IMAGES / f"{name}.png"
    picture.save(path)
    size = path.stat().st_size
    print(f"{path.name}: {picture.width} x {picture.height}, {colours} colours, {size} bytes",
          flush=True)
    if size > MOST_BYTES:
        raise ValueError(f"{name}: {size} bytes are too many")
