"""Finds lines of text in pictures."""

# The least height and distance of lines of text, in pixels. Anything thinner is a separator.
LINE_HEIGHT, LINE_GAP = 5, 6
# How much text stands out from its ground, of 255, and how far it is from the sides of its box.
CONTRAST, SIDE = 40, 24


def lines_of_text(picture, box):
    """Top and bottom of each line of text in a box, such as a menu."""
    middle = box._replace(left=box.left + SIDE, right=box.right - SIDE)
    shot = picture.crop(middle)
    ground = shot.commonest_colour(shot.box)
    written = [y for y in range(shot.height) if _differs(shot.row(y), ground)]
    lines = []
    for y in written:
        if lines and y - lines[-1][1] <= LINE_GAP:
            lines[-1][1] = y
        else:
            lines.append([y, y])
    return [(box.top + top, box.top + bottom) for top, bottom in lines if bottom - top >= LINE_HEIGHT]


def _differs(row, ground):
    return any(abs(row[at + channel] - ground[channel]) > CONTRAST
               for at in range(0, len(row), 3) for channel in range(3))
