#version 440

// The whole background in one pass: the cover's gradient, a little shade over it, and on top six
// blurred, glowing blobs in screen blend. Lengths are in points. What is set from outside:
//   area                      size of the item; x and y grow to the right and down
//   firstColor, secondColor   the gradient, from the top leading corner to the bottom trailing one
//   glow                      1 with the blobs, 0 without them
//   blob0 … blob5             centre x and y, radius at which the blob ends, radius of its blur
//   blobColor0 … blobColor5   red, green, blue (not premultiplied), opacity at the centre
layout(location = 0) in vec2 qt_TexCoord0;
// Of each blob what its opacity takes beside the centre, from the vertex shader.
layout(location = 1) flat in vec4 measure0;
layout(location = 2) flat in vec4 measure1;
layout(location = 3) flat in vec4 measure2;
layout(location = 4) flat in vec4 measure3;
layout(location = 5) flat in vec4 measure4;
layout(location = 6) flat in vec4 measure5;
layout(location = 0) out vec4 fragColor;

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

// Where the shade from the centre ends.
const float shadeRadius = 1000.0;

// Black in multiply blend is black drawn over.
float shade(vec2 place, vec2 unit) {
    float fromCenter = 0.06 * max(1.0 - distance(place, 0.5 * area) / shadeRadius, 0.0);
    return (1.0 - fromCenter) * (1.0 - 0.08 * (1.0 - unit.x)) * (1.0 - 0.08 * (1.0 - unit.y));
}

// Share of a Gaussian of deviation 1 that lies below 2.4 t, for t from 0 on; off by at most 0.01.
// Where a processor draws, every step of this function counts six times a pixel.
vec2 below(vec2 t) {
    vec2 missing = max(1.0 - t, 0.0);
    return 1.0 - 0.5 * missing * missing;
}

// Opacity of a blob, 0 to 1: a cone from its centre to its radius after a Gaussian blur, in closed
// form. The blur rounds the cone's tip and foot; nothing comes in from outside of the area, so the
// blob fades at the area's sides (there by the blurred opacity alone: its slope under the blur would
// change three steps of 255 at most).
float cone(vec2 place, vec2 toSide, vec4 blob, vec4 measure) {
    vec2 away = place - blob.xy;
    float rest = 1.0 - sqrt(dot(away, away) + measure.y) * measure.x;
    float level = 0.5 * (rest + sqrt(rest * rest + measure.z));
    vec2 share = below(toSide * measure.w);
    return level * share.x * share.y;
}

// What a blob leaves of the darkness in screen blend.
vec3 left(vec2 place, vec2 toSide, vec4 blob, vec4 measure, vec4 color) {
    return 1.0 - glow * color.a * cone(place, toSide, blob, measure) * color.rgb;
}

void main() {
    vec2 place = qt_TexCoord0 * area;
    vec2 toSide = min(place, area - place);
    float along = dot(place, area) / dot(area, area);
    vec3 color = mix(firstColor.rgb, secondColor.rgb, along) * shade(place, qt_TexCoord0);
    vec3 dark = 1.0 - color;
    dark *= left(place, toSide, blob0, measure0, blobColor0);
    dark *= left(place, toSide, blob1, measure1, blobColor1);
    dark *= left(place, toSide, blob2, measure2, blobColor2);
    dark *= left(place, toSide, blob3, measure3, blobColor3);
    dark *= left(place, toSide, blob4, measure4, blobColor4);
    dark *= left(place, toSide, blob5, measure5, blobColor5);
    // Slow gradients show their steps in eight bits; half a step of fixed noise hides them.
    float noise = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    fragColor = vec4(1.0 - dark + (noise - 0.5) / 255.0, 1.0) * qt_Opacity;
}
