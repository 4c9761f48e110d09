import struct


class Ogg:
    """Pages and packets (RFC 3533)."""

    table = []
    for index in range(256):
        value = index << 24
        for _ in range(8):
            value = (value << 1) ^ (0x04C11DB7 if value & 0x80000000 else 0)
        table.append(value & 0xFFFFFFFF)

    @classmethod
    def checksum(cls, page):
        value = 0
        for byte in page:
            value = (value << 8 & 0xFFFFFFFF) ^ cls.table[value >> 24 ^ byte]
        return value

    @classmethod
    def with_checksum(cls, page):
        page = page[:22] + bytes(4) + page[26:]
        return page[:22] + struct.pack("<I", cls.checksum(page)) + page[26:]

    @classmethod
    def page(cls, flags, granule, number, lacing, body):
        header = struct.pack("<4sBBqIII", b"OggS", 0, flags, granule, 7, number, 0)
        header += bytes([len(lacing)]) + bytes(lacing)
        return cls.with_checksum(header + body)

    @staticmethod
    def whole_pages(data):
        at = 0
        while at < len(data):
            lacing = data[at + 27 : at + 27 + data[at + 26]]
            size = 27 + len(lacing) + sum(lacing)
            yield data[at : at + size]
            at += size

    @staticmethod
    def pages(data):
        """Gives (flags, granule, lacing, body)."""
        at = 0
        while at < len(data):
            flags, granule = struct.unpack_from("<Bq", data, at + 5)
            lacing = data[at + 27 : at + 27 + data[at + 26]]
            at += 27 + len(lacing)
            yield flags, granule, lacing, data[at : at + sum(lacing)]
            at += sum(lacing)

    @classmethod
    def packets(cls, data):
        """Gives (packet, granule of its page)."""
        packet = b""
        for _, granule, lacing, body in cls.pages(data):
            at = 0
            for size in lacing:
                packet += body[at : at + size]
                at += size
                if size < 255:
                    yield packet, granule
                    packet = b""

    @classmethod
    def full_pages(cls, packets, headers):
        """Fills pages to their largest size: most begin and end inside a packet. Each of the first
        `headers` packets has a page of its own."""
        pages = []
        segments = []  # (size, bytes, granule if a packet ends here)

        def flush(continued, last=False):
            granules = [granule for _, _, granule in segments if granule is not None]
            flags = continued | (0 if pages else 2) | (4 if last else 0)
            body = b"".join(data for _, data, _ in segments)
            lacing = [size for size, _, _ in segments]
            pages.append(
                cls.page(flags, granules[-1] if granules else -1, len(pages), lacing, body)
            )
            continues = segments[-1][2] is None
            segments.clear()
            return 1 if continues else 0

        continued = 0
        for number, (packet, granule) in enumerate(packets):
            for at in range(0, len(packet) + 1, 255):
                data = packet[at : at + 255]
                segments.append((len(data), data, granule if len(data) < 255 else None))
                if len(segments) == 255:
                    continued = flush(continued)
            if number < headers and segments:
                continued = flush(continued)
        if segments:
            flush(continued, True)
        return b"".join(pages)
