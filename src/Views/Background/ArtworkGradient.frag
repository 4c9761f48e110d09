#version 440

// Interpolated vertex colours. Slow gradients would show the steps of eight bits; half a step of fixed
// noise hides them.
layout(location = 0) in vec3 color;
layout(location = 0) out vec4 fragColor;

void main() {
    float noise = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    fragColor = vec4(color + (noise - 0.5) / 255.0, 1.0);
}
