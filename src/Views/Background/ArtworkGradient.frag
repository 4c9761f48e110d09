#version 440

// The whole background in one pass: the cover's gradient, a little shade over it, and on top six
// blurred, glowing blobs in screen blend. Lengths are in points. What is set from outside:
//   area                      size of the item; x and y grow to the right and down
//   firstColor, secondColor   the gradient, from the top leading corner to the bottom trailing one
//   glow                      1 with the blobs, 0 without them
//   blob0 … blob5             centre x and y, radius at which the blob ends, radius of its blur
//   blobColor0 … blobColor5   red, green, blue (not premultiplied), opacity at the centre
layout(location = 0) in vec2 qt_TexCoord0;
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

// Share of a Gaussian of deviation 1 that lies below z; off by less than 0.0002.
vec2 below(vec2 z) {
    return 1.0 / (1.0 + exp(-z * (1.5976 + 0.070566 * z * z)));
}

// Opacity of a blob, 0 to 1: a cone from its centre to its radius after a Gaussian blur, in closed
// form. The blur rounds the cone's tip and foot; nothing comes in from outside of the area, so the
// blob fades at the area's sides.
float cone(vec2 place, vec4 blob) {
    float deviation = blob.w;
    vec2 away = place - blob.xy;
    // Mean distance from the centre under the blur: deviation * sqrt(pi / 2) at the tip.
    float rest = 1.0 - sqrt(dot(away, away) + 1.5708 * deviation * deviation) / blob.z;
    float softness = deviation / blob.z;
    if (rest < -4.0 * softness)
        return 0.0;
    // Mean of max(rest, 0) under the blur: softness / sqrt(2 pi) at the foot.
    float level = 0.5 * (rest + sqrt(rest * rest + 0.6366 * softness * softness));
    vec2 toSide = min(place, area - place);
    if (min(toSide.x, toSide.y) < 4.0 * deviation) {
        vec2 share = below(toSide / deviation);
        level *= share.x * share.y;
    }
    return level;
}

vec3 screened(vec3 ground, vec2 place, vec4 blob, vec4 color) {
    return ground + color.a * cone(place, blob) * color.rgb * (1.0 - ground);
}

void main() {
    vec2 place = qt_TexCoord0 * area;
    float along = dot(place, area) / dot(area, area);
    vec3 color = mix(firstColor.rgb, secondColor.rgb, along) * shade(place, qt_TexCoord0);
    if (glow > 0.0) {
        color = screened(color, place, blob0, blobColor0);
        color = screened(color, place, blob1, blobColor1);
        color = screened(color, place, blob2, blobColor2);
        color = screened(color, place, blob3, blobColor3);
        color = screened(color, place, blob4, blobColor4);
        color = screened(color, place, blob5, blobColor5);
    }
    // Slow gradients show their steps in eight bits; half a step of fixed noise hides them.
    float noise = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    fragColor = vec4(color + (noise - 0.5) / 255.0, 1.0) * qt_Opacity;
}
