#version 440

// Spans the background, and works out once what of each blob is the same for every pixel: divisions
// are dear where a processor does the drawing.
layout(location = 0) in vec4 qt_Vertex;
layout(location = 1) in vec2 qt_MultiTexCoord0;
layout(location = 0) out vec2 qt_TexCoord0;
layout(location = 1) flat out vec4 measure0;
layout(location = 2) flat out vec4 measure1;
layout(location = 3) flat out vec4 measure2;
layout(location = 4) flat out vec4 measure3;
layout(location = 5) flat out vec4 measure4;
layout(location = 6) flat out vec4 measure5;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
    float qt_Opacity;
    float glow;
    vec2 area;
    vec4 firstColor;
    vec4 secondColor;
    vec4 blob0;
    vec4 blob1;
    vec4 blob2;
    vec4 blob3;
    vec4 blob4;
    vec4 blob5;
    vec4 blobColor0;
    vec4 blobColor1;
    vec4 blobColor2;
    vec4 blobColor3;
    vec4 blobColor4;
    vec4 blobColor5;
};

// One over the radius, the squares that round the cone's tip (its mean distance from the centre under
// the blur is deviation * sqrt(pi / 2) there) and its foot (the mean of what is left above nothing is
// softness / sqrt(2 pi) there), and one over the width of the fade at the area's sides.
vec4 measured(vec4 blob) {
    float deviation = blob.w;
    float softness = deviation / blob.z;
    return vec4(1.0 / blob.z, 1.5708 * deviation * deviation, 0.6366 * softness * softness,
                1.0 / (2.4 * deviation));
}

void main() {
    qt_TexCoord0 = qt_MultiTexCoord0;
    measure0 = measured(blob0);
    measure1 = measured(blob1);
    measure2 = measured(blob2);
    measure3 = measured(blob3);
    measure4 = measured(blob4);
    measure5 = measured(blob5);
    gl_Position = qt_Matrix * qt_Vertex;
}
