#version 440

// Cuts the strokes out of the text shadow, so that translucent text shows the bright background and
// not its own shadow.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
    float qt_Opacity;
};
layout(binding = 1) uniform sampler2D source;
layout(binding = 2) uniform sampler2D blurred;

const float fullInk = 0.5; // from this opacity on the shadow is cut out completely

void main() {
    float ink = min(texture(source, qt_TexCoord0).a / fullInk, 1.0);
    fragColor = texture(blurred, qt_TexCoord0) * (1.0 - ink) * qt_Opacity;
}
