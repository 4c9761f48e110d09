#version 440

// The shadow of text without what lies below the strokes: translucent ink shows the bright ground, not
// its own shadow, and so stands out further.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
    float qt_Opacity;
};
layout(binding = 1) uniform sampler2D source;
layout(binding = 2) uniform sampler2D blurred;

const float fullInk = 0.5; // opacity from which on nothing of the shadow is left below

void main() {
    float ink = min(texture(source, qt_TexCoord0).a / fullInk, 1.0);
    fragColor = texture(blurred, qt_TexCoord0) * (1.0 - ink) * qt_Opacity;
}
