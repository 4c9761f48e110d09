#version 440

// The soft shadow of a rectangle with rounded corners: its Gaussian blur, exact along x and summed
// along y. Lengths are in points. The item exceeds the rectangle by `margin` on each side.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
    float qt_Opacity;
    float strength; // opacity of the black, 0 to 1
    float margin;
    float radius;    // of the corners
    float deviation; // of the blur
    vec2 box;        // the rectangle's size
};

// The Gaussian cumulative distribution at z, with an error below 0.0002.
float below(float z) {
    return 1.0 / (1.0 + exp(-z * (1.5976 + 0.070566 * z * z)));
}

// The part of the blur at `place` that comes from the rectangle's row at `y` from its centre.
float acrossRow(vec2 place, float y) {
    float intoCorner = max(abs(y) - (0.5 * box.y - radius), 0.0);
    float half_width = 0.5 * box.x - radius + sqrt(max(radius * radius - intoCorner * intoCorner, 0.0));
    return below((place.x + half_width) / deviation) - below((place.x - half_width) / deviation);
}

void main() {
    vec2 place = qt_TexCoord0 * (box + 2.0 * margin) - 0.5 * box - margin;
    float lowest = max(place.y - 3.0 * deviation, -0.5 * box.y);
    float highest = min(place.y + 3.0 * deviation, 0.5 * box.y);
    float share = 0.0;
    if (highest > lowest) {
        // Eight samples are enough; more would not be visible.
        const int steps = 8;
        float from = below((lowest - place.y) / deviation);
        for (int i = 0; i < steps; ++i) {
            float y = mix(lowest, highest, (float(i) + 0.5) / float(steps));
            float upTo = below((mix(lowest, highest, float(i + 1) / float(steps)) - place.y) / deviation);
            share += acrossRow(place, y) * (upTo - from);
            from = upTo;
        }
    }
    fragColor = vec4(0.0, 0.0, 0.0, strength * share) * qt_Opacity;
}
