#include <windows.h>

#include <d3dcompiler.h>
#include <wrl/client.h>

#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

#include "D3d11PostProcessor.hpp"

namespace port::platform {
namespace {

using Microsoft::WRL::ComPtr;

// One triangle that covers the screen, from the number of its corner alone. Some systems' compilers
// know few of the language's functions and none of a shader's own: macros and a series stand for
// them.
constexpr std::string_view kShader = R"(
cbuffer ShaderParams : register(b0) {
    float texelX, texelY, sharpen, contrast;
    float saturation, bloom, scanline, curvature;
    float banding, mode, time, crtMask;
    float uvScaleX, uvScaleY, uvOffsetX, uvOffsetY;
};
Texture2D scene : register(t0);
SamplerState filter : register(s0);

struct Corner {
    float4 position : SV_Position;
    float2 uv : TEXCOORD0;
};

Corner vertexMain(uint id : SV_VertexID) {
    float number = id;
    float2 corner = float2(-1.0, -1.0);
    if (number > 0.5) corner.y = 3.0;
    if (number > 1.5) corner = float2(3.0, -1.0);
    Corner output;
    output.position = float4(corner, 0.0, 1.0);
    output.uv = float2((corner.x + 1.0) * 0.5, 1.0 - (corner.y + 1.0) * 0.5);
    return output;
}

#define SCENE(x, y) scene.Sample(filter, uv + float2((x) * texelX, (y) * texelY)).rgb
#define FRACTION(x) ((x) - floor(x))
// The cosine of pi * x is SERIES(PHASE(x)); no more than 0.000004 off.
#define PHASE(x) (abs((x) - 2.0 * floor((x) * 0.5) - 1.0) - 0.5)
#define SERIES(z) ((z) * (3.14159265 + (z) * (z) * (-5.16771278 + (z) * (z) * \
    (2.55016404 + (z) * (z) * (-0.59926453 + (z) * (z) * 0.08214589)))))

float4 pixelMain(Corner input) : SV_Target {
    float2 uv = input.uv;
    float inside = 1.0;
    if (curvature > 0.001) {
        float2 q = uv * 2.0 - 1.0;
        q = q * (1.0 + curvature * 0.18 * dot(q, q));
        uv = q * 0.5 + 0.5;
        if (abs(q.x) > 1.0) inside = 0.0;
        if (abs(q.y) > 1.0) inside = 0.0;
    }
    uv = uv * float2(uvScaleX, uvScaleY) + float2(uvOffsetX, uvOffsetY);

    float3 c = SCENE(0.0, 0.0);
    float3 l = SCENE(-1.0, 0.0);
    float3 r = SCENE(1.0, 0.0);
    float3 u = SCENE(0.0, -1.0);
    float3 d = SCENE(0.0, 1.0);
    float3 avg = (l + r + u + d) * 0.25;
    if (mode > 0.5) {
        if (mode < 1.5) {
            c = saturate(c * 1.18 - avg * 0.18);
        } else {
            if (mode < 2.5) {
                c = saturate(c + (c - avg) * max(sharpen, 0.22));
            } else {
                float third = 1.0 / 3.0;
                float ex = dot(abs(l - r), float3(third, third, third));
                float ey = dot(abs(u - d), float3(third, third, third));
                float3 edge = (u + d) * 0.5;
                if (ex < ey) edge = (l + r) * 0.5;
                c = lerp(c, edge, 0.20);
                c = saturate(c + (c - avg) * sharpen * 0.45);
            }
        }
    }
    if (bloom > 0.001) {
        float3 glow = (SCENE(-2.0, -2.0) + SCENE(2.0, -2.0) + SCENE(-2.0, 2.0) +
                       SCENE(2.0, 2.0)) * 0.25;
        float brightest = max(glow.r, max(glow.g, glow.b));
        c = c + glow * max(0.0, brightest - 0.45) * bloom;
    }
    float lum = dot(c, float3(0.299, 0.587, 0.114));
    c = lerp(float3(lum, lum, lum), c, saturation);
    c = (c - 0.5) * contrast + 0.5;
    if (scanline > 0.001) {
        float phase = PHASE(uv.y / max(texelY, 0.00001));
        float row = 0.5 + 0.5 * SERIES(phase);
        c = c * (1.0 - scanline * (0.10 + 0.18 * row));
    }
    if (banding > 0.001) {
        float2 place = input.position.xy + time;
        float3 p = FRACTION(place.xyx * 0.1031);
        p = p + dot(p, p.yzx + 33.33);
        float noise = FRACTION((p.x + p.y) * p.z);
        c = c + (noise - 0.5) / 255.0 * banding;
    }
    if (crtMask > 0.001) {
        float2 vp = input.uv * 2.0 - 1.0;
        float vignette = saturate(1.0 - 0.12 * dot(vp, vp));
        float phase = PHASE(input.position.x - 0.5);
        float mask = 0.975 + 0.025 * SERIES(phase);
        c = c * (vignette * mask);
    }
    return float4(saturate(c) * inside, 1.0);
}
)";

ComPtr<ID3DBlob> compile(const char* entry, const char* profile, std::string& error) {
    ComPtr<ID3DBlob> code, messages;
    const HRESULT result =
        D3DCompile(kShader.data(), kShader.size(), "presentation", nullptr, nullptr, entry, profile,
                   D3DCOMPILE_OPTIMIZATION_LEVEL3, 0, &code, &messages);
    if (SUCCEEDED(result)) return code;
    error = "Shader: ";
    error += messages ? static_cast<const char*>(messages->GetBufferPointer()) : resultCode(result);
    return nullptr;
}

class D3d11PostProcessor final : public PostProcessor {
  public:
    D3d11PostProcessor(ID3D11Device& device, ID3D11DeviceContext& context, PixelSize canvas)
        : device_(&device), context_(&context), size_(canvas) {}

    bool start(std::string& error);
    std::string draw(const SpriteImage& canvas, PixelSize window, const ScreenLayout& layout,
                     const ShaderParams& params, bool sharpPixels) override;

  private:
    HRESULT makeTexture();
    HRESULT makeSampler(D3D11_FILTER filter, ComPtr<ID3D11SamplerState>& sampler);
    bool makeShaders(std::string& error);
    HRESULT makeParameters();

    ComPtr<ID3D11Device> device_;
    ComPtr<ID3D11DeviceContext> context_;
    PixelSize size_;
    ComPtr<ID3D11Texture2D> texture_;
    ComPtr<ID3D11ShaderResourceView> view_;
    ComPtr<ID3D11SamplerState> point_, linear_;
    ComPtr<ID3D11VertexShader> vertexShader_;
    ComPtr<ID3D11PixelShader> pixelShader_;
    ComPtr<ID3D11Buffer> parameters_;
};

bool D3d11PostProcessor::start(std::string& error) {
    HRESULT result = makeTexture();
    if (SUCCEEDED(result)) result = makeSampler(D3D11_FILTER_MIN_MAG_MIP_POINT, point_);
    if (SUCCEEDED(result)) result = makeSampler(D3D11_FILTER_MIN_MAG_MIP_LINEAR, linear_);
    if (SUCCEEDED(result)) {
        if (!makeShaders(error)) return false;
        result = makeParameters();
    }
    if (FAILED(result)) error = "D3D11 start failed " + resultCode(result);
    return SUCCEEDED(result);
}

HRESULT D3d11PostProcessor::makeTexture() {
    D3D11_TEXTURE2D_DESC form{};
    form.Width = static_cast<UINT>(size_.width);
    form.Height = static_cast<UINT>(size_.height);
    form.MipLevels = form.ArraySize = form.SampleDesc.Count = 1;
    form.Format = DXGI_FORMAT_B8G8R8A8_UNORM;
    form.Usage = D3D11_USAGE_DEFAULT;
    form.BindFlags = D3D11_BIND_SHADER_RESOURCE;
    const HRESULT result = device_->CreateTexture2D(&form, nullptr, &texture_);
    if (FAILED(result)) return result;
    return device_->CreateShaderResourceView(texture_.Get(), nullptr, &view_);
}

HRESULT D3d11PostProcessor::makeSampler(D3D11_FILTER filter, ComPtr<ID3D11SamplerState>& sampler) {
    D3D11_SAMPLER_DESC form{};
    form.Filter = filter;
    form.AddressU = form.AddressV = form.AddressW = D3D11_TEXTURE_ADDRESS_CLAMP;
    form.ComparisonFunc = D3D11_COMPARISON_NEVER;
    return device_->CreateSamplerState(&form, &sampler);
}

bool D3d11PostProcessor::makeShaders(std::string& error) {
    const ComPtr<ID3DBlob> vertexCode = compile("vertexMain", "vs_4_0", error);
    if (!vertexCode) return false;
    const ComPtr<ID3DBlob> pixelCode = compile("pixelMain", "ps_4_0", error);
    if (!pixelCode) return false;
    HRESULT result = device_->CreateVertexShader(
        vertexCode->GetBufferPointer(), vertexCode->GetBufferSize(), nullptr, &vertexShader_);
    if (SUCCEEDED(result)) {
        result = device_->CreatePixelShader(pixelCode->GetBufferPointer(),
                                            pixelCode->GetBufferSize(), nullptr, &pixelShader_);
    }
    if (FAILED(result)) error = "Shader: " + resultCode(result);
    return SUCCEEDED(result);
}

HRESULT D3d11PostProcessor::makeParameters() {
    D3D11_BUFFER_DESC form{};
    form.ByteWidth = sizeof(ShaderParams);
    form.Usage = D3D11_USAGE_DYNAMIC;
    form.BindFlags = D3D11_BIND_CONSTANT_BUFFER;
    form.CPUAccessFlags = D3D11_CPU_ACCESS_WRITE;
    return device_->CreateBuffer(&form, nullptr, &parameters_);
}

std::string D3d11PostProcessor::draw(const SpriteImage& canvas, PixelSize,
                                     const ScreenLayout& layout, const ShaderParams& params,
                                     bool sharpPixels) {
    if (PixelSize{canvas.width, canvas.height} != size_) return "the canvas has another size";
    context_->UpdateSubresource(texture_.Get(), 0, nullptr, canvas.bgra.data(),
                                static_cast<UINT>(canvas.width) * UINT{kPixelBytes}, 0);
    D3D11_MAPPED_SUBRESOURCE mapped{};
    const HRESULT result = context_->Map(parameters_.Get(), 0, D3D11_MAP_WRITE_DISCARD, 0, &mapped);
    if (FAILED(result)) return "D3D11 frame failed " + resultCode(result);
    std::memcpy(mapped.pData, &params, sizeof params);
    context_->Unmap(parameters_.Get(), 0);

    ComPtr<ID3D11RenderTargetView> target;
    context_->OMGetRenderTargets(1, &target, nullptr);
    if (!target) return "D3D11 frame failed: no target";
    constexpr std::array<float, 4> kBlack = {0.0F, 0.0F, 0.0F, 1.0F};
    context_->ClearRenderTargetView(target.Get(), kBlack.data());
    const PixelArea& area = layout.viewport;
    const D3D11_VIEWPORT viewport = {static_cast<float>(area.x),
                                     static_cast<float>(area.y),
                                     static_cast<float>(area.width),
                                     static_cast<float>(area.height),
                                     0.0F,
                                     1.0F};
    context_->RSSetViewports(1, &viewport);
    context_->IASetInputLayout(nullptr);
    context_->IASetPrimitiveTopology(D3D11_PRIMITIVE_TOPOLOGY_TRIANGLELIST);
    context_->VSSetShader(vertexShader_.Get(), nullptr, 0);
    context_->PSSetShader(pixelShader_.Get(), nullptr, 0);
    context_->PSSetConstantBuffers(0, 1, parameters_.GetAddressOf());
    context_->PSSetShaderResources(0, 1, view_.GetAddressOf());
    context_->PSSetSamplers(0, 1, (sharpPixels ? point_ : linear_).GetAddressOf());
    context_->Draw(3, 0);
    return {};
}

}  // namespace

std::string resultCode(HRESULT code) {
    std::array<char, 16> digits{};
    const auto end =
        std::to_chars(digits.begin(), digits.end(), static_cast<unsigned long>(code), 16).ptr;
    return "hr=0x" + std::string(digits.begin(), end);
}

std::unique_ptr<PostProcessor> makeD3d11PostProcessor(ID3D11Device& device,
                                                      ID3D11DeviceContext& context,
                                                      PixelSize canvas, std::string& error) {
    auto processor = std::make_unique<D3d11PostProcessor>(device, context, canvas);
    if (!processor->start(error)) return nullptr;
    return processor;
}

}  // namespace port::platform
