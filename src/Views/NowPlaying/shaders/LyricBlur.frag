#version 440

// A Gaussian blur with a standard deviation of 1.2 points, in one pass of five by five taps.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec2 texelStep; // one point
};
layout(binding = 1) uniform sampler2D source;

const float deviation = 1.2;

void main() {
    vec4 sum = vec4(0.0);
    float weights = 0.0;
    for (int y = -2; y <= 2; ++y) {
        for (int x = -2; x <= 2; ++x) {
            vec2 away = vec2(float(x), float(y));
            float weight = exp(-0.5 * dot(away, away) / (deviation * deviation));
            sum += texture(source, qt_TexCoord0 + away * texelStep) * weight;
            weights += weight;
        }
    }
    fragColor = sum / weights * qt_Opacity;
}
