#version 440

// The first pass of the text shadow: blurs the source's opacity along x, narrowly (red) and widely
// (green). Runs at half resolution: a texel is two points.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec2 texelStep;
};
layout(binding = 1) uniform sampler2D source;

const float narrow = 0.75; // deviations in texels
const float wide = 3.0;

void main() {
    vec2 sum = vec2(0.0);
    vec2 weights = vec2(0.0);
    for (int i = -8; i <= 8; ++i) {
        float distance = float(i);
        vec2 weight = exp(-0.5 * distance * distance / vec2(narrow * narrow, wide * wide));
        sum += texture(source, qt_TexCoord0 + texelStep * distance).a * weight;
        weights += weight;
    }
    fragColor = vec4(sum / weights, 0.0, 1.0) * qt_Opacity;
}
