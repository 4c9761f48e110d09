#version 440

layout(location = 0) in vec4 position;
layout(location = 1) in vec3 vertexColor;
layout(location = 0) out vec3 color;

layout(std140, binding = 0) uniform Parameters {
    mat4 qt_Matrix;
};

void main() {
    color = vertexColor;
    gl_Position = qt_Matrix * position;
}
