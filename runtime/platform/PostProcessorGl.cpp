// OpenGL 3.3 core, its entry points taken from the context, so that nothing links with a driver.

#define GL_GLEXT_PROTOTYPES
#include <SDL_opengl.h>

#include <array>
#include <charconv>
#include <string_view>

#include "PostProcessor.hpp"

namespace port::platform {
namespace {

// One triangle that covers the screen, from the number of its corner alone. The canvas lies in its
// texture with the top row first, so its v runs downward.
constexpr const char* kVertexShader = R"(#version 330 core
out vec2 baseUv;
void main() {
    vec2 corner = vec2(gl_VertexID == 2 ? 3.0 : -1.0, gl_VertexID == 1 ? 3.0 : -1.0);
    gl_Position = vec4(corner, 0.0, 1.0);
    baseUv = vec2((corner.x + 1.0) * 0.5, 1.0 - (corner.y + 1.0) * 0.5);
}
)";

constexpr const char* kPixelShader = R"(#version 330 core
layout(origin_upper_left) in vec4 gl_FragCoord;
layout(std140) uniform ShaderParams {
    float texelX, texelY, sharpen, contrast;
    float saturation, bloom, scanline, curvature;
    float banding, mode, time, crtMask;
    float uvScaleX, uvScaleY, uvOffsetX, uvOffsetY;
};
uniform sampler2D scene;
in vec2 baseUv;
out vec4 pixel;

const float kOff = 0.001;
const float kPi = 3.14159265;

vec3 sceneAt(vec2 uv, float x, float y) {
    return texture(scene, uv + vec2(x * texelX, y * texelY)).rgb;
}

vec3 saturate(vec3 color) {
    return clamp(color, 0.0, 1.0);
}

float hash12(vec2 place) {
    vec3 p = fract(vec3(place.xyx) * 0.1031);
    p += dot(p, p.yzx + 33.33);
    return fract((p.x + p.y) * p.z);
}

vec3 upscaled(vec2 uv) {
    vec3 c = sceneAt(uv, 0.0, 0.0);
    if (mode <= 0.5) return c;
    vec3 l = sceneAt(uv, -1.0, 0.0);
    vec3 r = sceneAt(uv, 1.0, 0.0);
    vec3 u = sceneAt(uv, 0.0, -1.0);
    vec3 d = sceneAt(uv, 0.0, 1.0);
    vec3 avg = (l + r + u + d) * 0.25;
    if (mode > 0.5 && mode < 1.5) return saturate(c * 1.18 - avg * 0.18);
    if (mode >= 1.5 && mode < 2.5) return saturate(c + (c - avg) * max(sharpen, 0.22));
    if (mode >= 2.5) {
        float ex = dot(abs(l - r), vec3(1.0 / 3.0));
        float ey = dot(abs(u - d), vec3(1.0 / 3.0));
        vec3 edge = ex < ey ? (l + r) * 0.5 : (u + d) * 0.5;
        c = mix(c, edge, 0.20);
        return saturate(c + (c - avg) * sharpen * 0.45);
    }
    return c;
}

vec3 glowing(vec3 c, vec2 uv) {
    vec3 glow = (sceneAt(uv, -2.0, -2.0) + sceneAt(uv, 2.0, -2.0) + sceneAt(uv, -2.0, 2.0) +
                 sceneAt(uv, 2.0, 2.0)) * 0.25;
    float lum = max(glow.r, max(glow.g, glow.b));
    return c + glow * max(0.0, lum - 0.45) * bloom;
}

void main() {
    vec2 uv = baseUv;
    if (curvature > kOff) {
        vec2 q = uv * 2.0 - 1.0;
        q *= 1.0 + curvature * 0.18 * dot(q, q);
        uv = q * 0.5 + 0.5;
        if (uv.x < 0.0 || uv.x > 1.0 || uv.y < 0.0 || uv.y > 1.0) {
            pixel = vec4(0.0, 0.0, 0.0, 1.0);
            return;
        }
    }
    uv = uv * vec2(uvScaleX, uvScaleY) + vec2(uvOffsetX, uvOffsetY);
    vec3 c = upscaled(uv);
    if (bloom > kOff) c = glowing(c, uv);
    float lum = dot(c, vec3(0.299, 0.587, 0.114));
    c = mix(vec3(lum), c, saturation);
    c = (c - 0.5) * contrast + 0.5;
    if (scanline > kOff) {
        float line = 0.5 + 0.5 * cos(kPi * uv.y / max(texelY, 0.00001));
        c *= 1.0 - scanline * (0.10 + 0.18 * line);
    }
    if (banding > kOff) c += (hash12(gl_FragCoord.xy + time) - 0.5) / 255.0 * banding;
    if (crtMask > kOff) {
        vec2 vp = baseUv * 2.0 - 1.0;
        float vignette = clamp(1.0 - 0.12 * dot(vp, vp), 0.0, 1.0);
        float mask = 0.975 + 0.025 * sin(gl_FragCoord.x * kPi);
        c *= vignette * mask;
    }
    pixel = vec4(saturate(c), 1.0);
}
)";

#define PORT_GL_FUNCTIONS(X) \
    X(AttachShader)          \
    X(BindBuffer)            \
    X(BindBufferBase)        \
    X(BindTexture)           \
    X(BindVertexArray)       \
    X(BufferData)            \
    X(Clear)                 \
    X(ClearColor)            \
    X(CompileShader)         \
    X(CreateProgram)         \
    X(CreateShader)          \
    X(DeleteBuffers)         \
    X(DeleteProgram)         \
    X(DeleteShader)          \
    X(DeleteTextures)        \
    X(DeleteVertexArrays)    \
    X(Disable)               \
    X(DrawArrays)            \
    X(GenBuffers)            \
    X(GenTextures)           \
    X(GenVertexArrays)       \
    X(GetError)              \
    X(GetProgramInfoLog)     \
    X(GetProgramiv)          \
    X(GetShaderInfoLog)      \
    X(GetShaderiv)           \
    X(GetUniformBlockIndex)  \
    X(LinkProgram)           \
    X(ShaderSource)          \
    X(TexImage2D)            \
    X(TexParameteri)         \
    X(TexSubImage2D)         \
    X(UniformBlockBinding)   \
    X(UseProgram)            \
    X(Viewport)

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are names.
struct GlFunctions {
#define PORT_GL_MEMBER(name) decltype(&::gl##name) name = nullptr;
    PORT_GL_FUNCTIONS(PORT_GL_MEMBER)
#undef PORT_GL_MEMBER

    // False when the context lacks one.
    bool load(void* (*entryPoint)(const char*)) {
        bool complete = true;
#define PORT_GL_LOAD(name)                                           \
    name = reinterpret_cast<decltype(name)>(entryPoint("gl" #name)); \
    complete = complete && name != nullptr;
        PORT_GL_FUNCTIONS(PORT_GL_LOAD)
#undef PORT_GL_LOAD
        return complete;
    }
};
// NOLINTEND(bugprone-macro-parentheses)
#undef PORT_GL_FUNCTIONS

std::string errorCode(GLenum code) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), code, 16).ptr;
    return "error=0x" + std::string(digits.begin(), end);
}

class GlPostProcessor final : public PostProcessor {
  public:
    ~GlPostProcessor() override;
    bool start(void* (*entryPoint)(const char*), PixelSize canvas, std::string& error);
    std::string draw(const SpriteImage& canvas, PixelSize window, const ScreenLayout& layout,
                     const ShaderParams& params, bool sharpPixels) override;

  private:
    bool addShader(GLenum kind, const char* source, std::string& error);
    bool link(std::string& error);
    void makeTexture(PixelSize size);
    void makeParameters();
    // The first error since the last call; GL_NO_ERROR for none.
    GLenum takeError();

    GlFunctions gl_;
    PixelSize size_;
    GLuint program_ = 0, texture_ = 0, parameters_ = 0, vertices_ = 0;
    bool failed_ = false;
};

GlPostProcessor::~GlPostProcessor() {
    // A driver that has failed may fail again when it cleans up.
    if (program_ == 0 || failed_) return;
    gl_.DeleteVertexArrays(1, &vertices_);
    gl_.DeleteBuffers(1, &parameters_);
    gl_.DeleteTextures(1, &texture_);
    gl_.DeleteProgram(program_);
}

bool GlPostProcessor::start(void* (*entryPoint)(const char*), PixelSize canvas,
                            std::string& error) {
    if (!gl_.load(entryPoint)) {
        error = "OpenGL 3.3 is incomplete";
        return false;
    }
    takeError();
    program_ = gl_.CreateProgram();
    if (!addShader(GL_VERTEX_SHADER, kVertexShader, error) ||
        !addShader(GL_FRAGMENT_SHADER, kPixelShader, error) || !link(error)) {
        return false;
    }
    makeTexture(canvas);
    makeParameters();
    // The core profile draws nothing without one.
    gl_.GenVertexArrays(1, &vertices_);
    gl_.BindVertexArray(vertices_);
    gl_.Disable(GL_DITHER);
    if (const GLenum code = takeError(); code != GL_NO_ERROR) {
        error = "OpenGL start failed " + errorCode(code);
        return false;
    }
    return true;
}

bool GlPostProcessor::addShader(GLenum kind, const char* source, std::string& error) {
    const GLuint shader = gl_.CreateShader(kind);
    gl_.ShaderSource(shader, 1, &source, nullptr);
    gl_.CompileShader(shader);
    GLint compiled = GL_FALSE;
    gl_.GetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled != GL_TRUE) {
        std::array<char, 1024> text{};
        gl_.GetShaderInfoLog(shader, static_cast<GLsizei>(text.size()), nullptr, text.data());
        error = std::string("Shader: ") + text.data();
    }
    gl_.AttachShader(program_, shader);
    gl_.DeleteShader(shader);  // it lives on with the program
    return compiled == GL_TRUE;
}

bool GlPostProcessor::link(std::string& error) {
    gl_.LinkProgram(program_);
    GLint linked = GL_FALSE;
    gl_.GetProgramiv(program_, GL_LINK_STATUS, &linked);
    if (linked == GL_TRUE) return true;
    std::array<char, 1024> text{};
    gl_.GetProgramInfoLog(program_, static_cast<GLsizei>(text.size()), nullptr, text.data());
    error = std::string("Shader: ") + text.data();
    return false;
}

void GlPostProcessor::makeTexture(PixelSize size) {
    size_ = size;
    gl_.GenTextures(1, &texture_);
    gl_.BindTexture(GL_TEXTURE_2D, texture_);
    gl_.TexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size.width, size.height, 0, GL_BGRA,
                   GL_UNSIGNED_BYTE, nullptr);
    gl_.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    gl_.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl_.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void GlPostProcessor::makeParameters() {
    constexpr GLuint kBinding = 0;
    gl_.GenBuffers(1, &parameters_);
    gl_.BindBufferBase(GL_UNIFORM_BUFFER, kBinding, parameters_);
    gl_.UniformBlockBinding(program_, gl_.GetUniformBlockIndex(program_, "ShaderParams"), kBinding);
}

GLenum GlPostProcessor::takeError() {
    const GLenum first = gl_.GetError();
    // A lost context reports errors without end.
    constexpr int kMostErrors = 16;
    for (int i = 0; i < kMostErrors && gl_.GetError() != GL_NO_ERROR; ++i) {
    }
    return first;
}

std::string GlPostProcessor::draw(const SpriteImage& canvas, PixelSize window,
                                  const ScreenLayout& layout, const ShaderParams& params,
                                  bool sharpPixels) {
    if (PixelSize{canvas.width, canvas.height} != size_) return "the canvas has another size";
    gl_.TexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size_.width, size_.height, GL_BGRA, GL_UNSIGNED_BYTE,
                      canvas.bgra.data());
    const GLint filter = sharpPixels ? GL_NEAREST : GL_LINEAR;
    gl_.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    gl_.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    gl_.BufferData(GL_UNIFORM_BUFFER, sizeof params, &params, GL_STREAM_DRAW);
    gl_.ClearColor(0.0F, 0.0F, 0.0F, 1.0F);
    gl_.Clear(GL_COLOR_BUFFER_BIT);
    const PixelArea& area = layout.viewport;
    // OpenGL counts from the bottom.
    gl_.Viewport(area.x, window.height - area.y - area.height, area.width, area.height);
    gl_.UseProgram(program_);
    gl_.DrawArrays(GL_TRIANGLES, 0, 3);
    const GLenum code = takeError();
    failed_ = code != GL_NO_ERROR;
    return failed_ ? "OpenGL frame failed " + errorCode(code) : "";
}

}  // namespace

std::unique_ptr<PostProcessor> makePostProcessor(void* (*entryPoint)(const char* name),
                                                 PixelSize canvas, std::string& error) {
    auto processor = std::make_unique<GlPostProcessor>();
    if (!processor->start(entryPoint, canvas, error)) return nullptr;
    return processor;
}

}  // namespace port::platform
