#version 440

// One direction of a Gaussian blur: nine taps, sigma of about 2.3 texels.

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec2 texelStep;
};
layout(binding = 1) uniform sampler2D source;

void main() {
    const float weights[5] = float[](0.176, 0.160, 0.121, 0.075, 0.056);
    vec4 sum = texture(source, qt_TexCoord0) * weights[0];
    for (int i = 1; i < 5; ++i) {
        sum += texture(source, qt_TexCoord0 + texelStep * float(i)) * weights[i];
        sum += texture(source, qt_TexCoord0 - texelStep * float(i)) * weights[i];
    }
    fragColor = sum * qt_Opacity;
}
