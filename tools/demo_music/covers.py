"""Covers of our own making, as different as covers are: paintings of light, photographs, flat
colour, black and white, almost nothing on white. Each gives an array of height x width x 3 bytes.
"""
import numpy as np

SIZE = 640


def _plane(size=SIZE):
    """Coordinates from -1 to 1, to the right and down."""
    axis = np.linspace(-1, 1, size, dtype=np.float32)
    return np.meshgrid(axis, axis)


def _rgb(text):
    return np.array([int(text[i:i + 2], 16) for i in (0, 2, 4)], dtype=np.float32) / 255


def _ramp(where, *stops):
    """Colours along a value from 0 to 1; stops are pairs of place and colour."""
    places = [place for place, _ in stops]
    colours = np.array([_rgb(colour) for _, colour in stops])
    return np.stack([np.interp(where, places, colours[:, channel]) for channel in range(3)], -1)


def _over(picture, colour, cover):
    """Lays a colour, or a picture, over a picture as far as `cover` (0 to 1) says."""
    colour = _rgb(colour) if isinstance(colour, str) else colour
    return picture + (colour - picture) * np.clip(cover, 0, 1)[..., None]


def _edge(distance, softness=0.004):
    """1 where a signed distance is inside (negative), 0 outside, smooth between."""
    return np.clip(0.5 - distance / softness / 2, 0, 1)


def _clouds(seed, roughness=1.6, stretch=1.0, size=SIZE):
    """Noise as nature has it, from 0 to 1: each scale weaker than the next larger one."""
    white = np.fft.fft2(np.random.default_rng(seed).normal(size=(size, size)))
    across, down = np.meshgrid(np.fft.fftfreq(size) * size * stretch, np.fft.fftfreq(size) * size)
    noise = np.fft.ifft2(white / np.maximum(1, np.hypot(across, down)) ** roughness).real
    low, high = np.quantile(noise, (0.01, 0.99))
    return np.clip((noise - low) / (high - low), 0, 1).astype(np.float32)


def _finish(picture, grain=0.0, seed=1):
    picture = picture + grain * np.random.default_rng(seed).normal(size=picture.shape[:2])[..., None]
    return (np.clip(picture, 0, 1) * 255 + 0.5).astype(np.uint8)


def _ridge(x, seed, height, roughness):
    """A line of hills: its y at each x."""
    random = np.random.default_rng(seed)
    return height + sum(roughness / n**1.1 * np.sin(n * 2.1 * x + random.uniform(0, 6.3)) for n in range(1, 14))


def sunset():
    x, y = _plane()
    sky = _ramp((y + 1) / 2, (0, "1b2450"), (0.3, "6a4688"), (0.45, "e9738a"), (0.6, "ffc07a"), (1, "ffe2a8"))
    sky = _over(sky, "fff3cf", 0.5 * _edge(np.hypot(x - 0.3, y - 0.02) - 0.13, 0.5))
    sky = _over(sky, "fff6da", _edge(np.hypot(x - 0.3, y - 0.02) - 0.13))
    sky = _over(sky, "ffb49a", 0.6 * (_clouds(5, 1.9, 3.0) - 0.5) * (y < 0))
    hills = _over(sky, "7d5078", _edge(_ridge(x, 3, 0.16, 0.025) - y))
    shimmer = 0.05 * (_clouds(9, 1.2, 6.0) - 0.5) * np.clip(y - 0.2, 0, 1) * 4
    mirror = np.clip(0.4 - y, -1, 0.2)
    rows = ((mirror + shimmer + 1) / 2 * (SIZE - 1)).astype(int)
    columns = np.clip(((x + shimmer + 1) / 2 * (SIZE - 1)).astype(int), 0, SIZE - 1)
    sea = 0.75 * hills[rows.clip(0, SIZE - 1), columns] * _rgb("c9b4d8")
    return _finish(_over(hills, sea, _edge(0.2 - y)), 0.012)


def planet():
    x, y = _plane()
    random = np.random.default_rng(2)
    picture = _ramp(_clouds(4), (0, "05060f"), (1, "1c1740"))
    stars = np.zeros((SIZE, SIZE))
    stars[random.integers(0, SIZE, 500), random.integers(0, SIZE, 500)] = random.uniform(0.2, 1, 500)
    picture = _over(picture, "ffffff", stars)
    radius = np.hypot(x + 0.05, y - 0.05) / 0.58
    height = np.sqrt(np.clip(1 - radius**2, 0, 1))
    bands = np.sin(16 * (y * 0.9 + x * 0.35) + 2.2 * _clouds(8, 1.8, 3.0))
    globe = _ramp((bands + 1) / 2, (0, "9c4f2e"), (0.5, "e5a765"), (1, "f7ddb0"))
    light = np.clip(0.75 * height - 0.6 * x - 0.35 * y, 0.02, 1.1)
    return _finish(_over(picture, globe * light[..., None], _edge(radius - 1, 0.01)), 0.008)


def shapes():
    x, y = _plane()
    picture = np.broadcast_to(_rgb("f3ead8"), (SIZE, SIZE, 3)).copy()
    picture = _over(picture, "1f6f70", ((x < 0) & (y < 0)).astype(float))
    picture = _over(picture, "e4572e", _edge(np.hypot(x - 0.5, y + 0.5) - 0.42))
    picture = _over(picture, "f2b134", _edge(np.maximum(np.hypot(x, y - 1) - 0.98, -y)) * (x > 0))
    picture = _over(picture, "1d2f4f", (((x + y) % 0.4 < 0.2) & (x < 0) & (y > 0)).astype(float))
    return _finish(_over(picture, "f3ead8", _edge(np.hypot(x + 0.5, y + 0.5) - 0.25)))


def ink():
    x, y = _plane()
    paper = _ramp(_clouds(12, 1.0), (0, "efe9dd"), (1, "f8f4ea"))
    blot = np.hypot(x + 0.05, (y + 0.05) * 1.2) - 0.75 * _clouds(21, 1.9) - 0.02
    picture = _over(paper, "202226", _edge(blot, 0.05) * (0.72 + 0.28 * _clouds(6, 1.4)))
    picture = _over(picture, "3a3d42", 0.25 * _edge(blot - 0.03, 0.14))
    return _finish(_over(picture, "b4232a", (np.maximum(abs(x - 0.7), abs(y - 0.72)) < 0.045) * 1.0), 0.006)


def snow():
    x, y = _plane()
    picture = _ramp((y + 1) / 2, (0, "e8edf3"), (0.6, "f7f8fa"), (1, "fdfdfd"))
    picture = _over(picture, "f6ddcf", 0.9 * _edge(np.hypot(x + 0.35, y + 0.4) - 0.13, 0.02))
    for depth, (height, colour) in enumerate(((0.12, "e3e9f0"), (0.3, "eaeff4"), (0.5, "f5f7f9"))):
        picture = _over(picture, colour, _edge(_ridge(x, 30 + depth, height, 0.08) - y, 0.03))
    for trunk in (-0.2, 0.25, 0.31):
        picture = _over(picture, "9aa6b2", ((abs(x - trunk) < 0.004) & (y > 0.28) & (y < 0.47)) * 0.9)
    return _finish(picture, 0.004)


def terraces():
    x, y = _plane()
    field = y * 5 + 1.6 * _clouds(14, 2.4) + 0.4 * np.sin(2 * x + y * 3)
    step = field % 1
    picture = _ramp((np.floor(field * 3) * 0.37) % 1, (0, "2f6b32"), (0.5, "6fa84a"), (1, "a9cf63"))
    picture = picture * (0.62 + 0.45 * step + 0.25 * (_clouds(15, 0.7) - 0.5))[..., None]
    picture = _over(picture, "cfe6ea", (step < 0.18) * 0.75 * _clouds(16))
    return _finish(picture, 0.03)


def bokeh():
    x, y = _plane()
    random = np.random.default_rng(77)
    picture = _ramp((y + 1) / 2, (0, "050a18"), (0.7, "0c1c33"), (1, "0a1222"))
    for _ in range(46):
        at = random.uniform(-1, 1), random.normal(0.15, 0.35)
        size = random.uniform(0.03, 0.13)
        colour = random.choice(["ffb35c", "ff7a59", "62d4ff", "b6f0d0", "ffe3a3", "e08bff"])
        disc = np.hypot(x - at[0], y - at[1]) - size
        picture = _over(picture, colour, random.uniform(0.12, 0.5) * (_edge(disc, 0.012) + 0.4 * _edge(abs(disc), 0.01)))
    return _finish(picture, 0.012)


def flat():
    """Nothing but one colour."""
    return _finish(np.broadcast_to(_rgb("d64550"), (SIZE, SIZE, 3)))


def mandala():
    x, y = _plane()
    radius, angle = np.hypot(x, y), np.arctan2(y, x)
    waves = sum(np.cos(6 * n * angle / 2 + n * 7 * radius) / n for n in (2, 4, 6, 8))
    picture = _ramp(np.clip((waves + 1.2) / 2.4, 0, 1), (0, "1a0b3b"), (0.45, "7a2e9d"), (0.7, "e06fa0"), (1, "ffd8a8"))
    return _finish(picture * np.clip(1.25 - 0.8 * radius, 0.1, 1)[..., None])


def window():
    x, y = _plane()
    wall = _ramp(_clouds(31, 1.1), (0, "8a745c"), (1, "a08a6e"))
    slant = x + 0.28 * y
    panes = (abs(slant) < 0.5) & (abs(y) < 0.62) & (abs(slant) > 0.03) & (abs(y + 0.05 * x) > 0.03)
    light = np.real(np.fft.ifft2(np.fft.fft2(panes.astype(float)) * np.exp(
        -(np.add.outer(np.fft.fftfreq(SIZE) ** 2, np.fft.fftfreq(SIZE) ** 2)) * 2200)))
    picture = wall * (0.5 + 0.25 * (1 - np.hypot(x, y)))[..., None] + light[..., None] * _rgb("8a6a38")
    shade = _edge(_clouds(33, 1.3) - 0.3, 0.3) * 0.3 * light
    return _finish(_over(picture, "4a3a28", shade), 0.02)


def hills():
    """Wider than high, as some covers are."""
    x, y = _plane()
    picture = _ramp((y + 1) / 2, (0, "f5b342"), (0.6, "ef7f4d"), (1, "d1495b"))
    for depth, colour in enumerate(("e4703f", "c9503f", "a03a4a", "6d2f52", "3f2450")):
        picture = _over(picture, colour, _edge(_ridge(x * 1.2, 50 + depth, -0.3 + 0.26 * depth, 0.11) - y))
    return _finish(picture, 0.008)[110:530]


def rain():
    """A black and white photograph: drops on a window."""
    x, y = _plane()
    random = np.random.default_rng(8)
    grey = 0.25 + 0.4 * _clouds(41, 2.2) + 0.1 * y
    for _ in range(150):
        at, size = random.uniform(-1, 1, 2), random.uniform(0.008, 0.045)
        drop = np.hypot(x - at[0], (y - at[1]) * 0.85) / size
        grey = np.where(drop < 1, 0.15 + 0.75 * np.clip((y - at[1]) / size * 0.5 + 0.5, 0, 1), grey)
    return _finish(np.repeat(grey[..., None], 3, -1), 0.03)
