"""Pictures of the screen."""

import struct
import zlib


class Picture:
    """A rectangle of pixels, as an X server hands it out: four bytes each, blue first."""

    def __init__(self, width, height, data):
        self.width, self.height, self._data = width, height, data

    def __eq__(self, other):
        return isinstance(other, Picture) and (self.width, self._data) == (other.width, other._data)

    def pixel(self, x, y):
        start = 4 * (y * self.width + x)
        blue, green, red = self._data[start : start + 3]
        return red, green, blue

    def pixels(self):
        data = self._data
        return zip(data[2::4], data[1::4], data[0::4])

    def share_unlike(self, other):
        """How many of the pixels are others than in a picture of the same size, 0 to 1."""
        assert (self.width, self.height) == (other.width, other.height)
        pairs = zip(self.pixels(), other.pixels())
        return sum(one != two for one, two in pairs) / (self.width * self.height)

    def save(self, path):
        """Writes a PNG."""
        rows = bytearray(3 * self.width * self.height)
        for channel in range(3):
            rows[channel::3] = self._data[2 - channel :: 4]
        stride = 3 * self.width
        lines = b"".join(b"\0" + rows[start : start + stride] for start in range(0, len(rows), stride))
        path.parent.mkdir(parents=True, exist_ok=True)
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n")
            for kind, body in (
                (b"IHDR", struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)),
                (b"IDAT", zlib.compress(lines, 6)),
                (b"IEND", b""),
            ):
                checksum = zlib.crc32(kind + body)
                file.write(struct.pack(">I", len(body)) + kind + body + struct.pack(">I", checksum))
