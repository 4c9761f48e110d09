class SetupHeader:
    """A Vorbis setup header (Vorbis I, 4.2.4) as a text of bits, in the order they are read."""

    # Vector of one dimension, four entries, sparse, none used, no lookup.
    empty_book = [(0x564342, 24), (1, 16), (4, 24), (0, 1), (1, 1), (0, 4), (0, 4)]

    def __init__(self, packet):
        self.bits = "".join(format(byte, "08b")[::-1] for byte in packet[7:])
        self.at = 8
        self.starts = []  # of the books
        for _ in range(int(self.bits[:8][::-1], 2) + 1):
            self.starts.append(self.at)
            self.skip_book()

    def take(self, count):
        value = int(self.bits[self.at : self.at + count][::-1] or "0", 2)
        self.at += count
        return value

    def skip_book(self):
        self.take(24)
        dimensions, entries = self.take(16), self.take(24)
        if self.take(1):
            self.take(5)
            entry = 0
            while entry < entries:
                entry += self.take((entries - entry).bit_length())
        else:
            sparse = self.take(1)
            for _ in range(entries):
                if not sparse or self.take(1):
                    self.take(5)
        lookup = self.take(4)
        if lookup:
            self.take(64)
            width = self.take(4) + 1
            self.take(1)
            side = 1
            while (side + 1) ** dimensions <= entries:
                side += 1
            self.take(width * (side if lookup == 1 else entries * dimensions))

    def packet(self, start, end):
        """The header with an empty book in place of what stands from bit `start` to `end`."""
        added = "".join(format(value, f"0{width}b")[::-1] for value, width in self.empty_book)
        count = len(self.starts) - (0 if start == end else 1)
        bits = format(count, "08b")[::-1] + self.bits[8:start] + added + self.bits[end:]
        bits = bits[: bits.rindex("1") + 1]  # the framing bit ends it
        padded = bits + "0" * (-len(bits) % 8)
        return b"\5vorbis" + bytes(int(padded[n : n + 8][::-1], 2) for n in range(0, len(padded), 8))
