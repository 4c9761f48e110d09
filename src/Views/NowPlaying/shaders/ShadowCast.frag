#version 440

// The second pass of the text shadow: blurs along y and combines both blurs in black. The wide one is
// slightly lower.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
    float qt_Opacity;
    float strength; // 0 to 1
    float ink;      // opacity of the source's ink, 0 to 1
    vec2 texelStep;
};
layout(binding = 1) uniform sampler2D source;

const float narrow = 0.75; // deviations in texels
const float wide = 3.0;
const vec2 opacities = vec2(0.45, 0.47);
const vec2 lift = vec2(5.0, 5.5);
const float drop = 0.5; // of the wide one, in texels

void main() {
    vec2 sum = vec2(0.0);
    vec2 weights = vec2(0.0);
    for (int i = -9; i <= 8; ++i) {
        float distance = float(i);
        vec2 offsets = vec2(distance, distance + drop);
        vec2 weight = exp(-0.5 * offsets * offsets / vec2(narrow * narrow, wide * wide));
        sum += texture(source, qt_TexCoord0 + texelStep * distance).rg * weight;
        weights += weight;
    }
    // Thin strokes would hardly cast a shadow: their blur is raised towards a full stroke's.
    vec2 covered = (1.0 - exp(-lift * sum / (weights * ink))) * opacities * strength;
    fragColor = vec4(0.0, 0.0, 0.0, 1.0 - (1.0 - covered.x) * (1.0 - covered.y)) * qt_Opacity;
}
