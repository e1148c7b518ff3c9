// A crowded frame of 480 by 272, from the world to the canvas, beside the bare blits of the same
// pictures at the same places. Sprites of actors who look left are mirrored as they are drawn; the
// bare blits take pictures that were mirrored beforehand.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <variant>
#include <vector>

#include "DrawList.hpp"
#include "Painter.hpp"
#include "SpriteBlit.hpp"
#include "SpriteTransform.hpp"
#include "StageScene.hpp"

namespace {

std::size_t allocations = 0;

}  // namespace

// Out of line: g++ takes an inlined pair for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

constexpr int kWidth = 480;
constexpr int kHeight = 272;
constexpr int kActors = 300;
constexpr int kPictures = 24;

// A picture of 256 colours whose colour 0, around a disc that fills `share` of the height, is
// clear.
void writePicture(const std::filesystem::path& path, int width, int height, double share) {
    std::ofstream out(path, std::ios::binary);
    const auto number = [&out](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) out.put(static_cast<char>(value >> (8 * i)));
    };
    constexpr std::uint32_t kPixelsAt = 54 + 1024;
    const int stride = (width + 3) / 4 * 4;
    out << "BM";
    number(kPixelsAt + static_cast<std::uint32_t>(stride * height), 4);
    number(0, 4);
    for (const std::uint32_t value : {kPixelsAt, 40U}) number(value, 4);
    for (const int side : {width, height}) number(static_cast<std::uint32_t>(side), 4);
    number(1, 2);
    number(8, 2);
    for (int i = 0; i < 6; ++i) number(0, 4);
    for (std::uint32_t color = 0; color < 256; ++color) number(color * 0x010203U, 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < stride; ++x) {
            const double across = (x - width * 0.5) / (width * 0.5 * share);
            const double down = (y - height * 0.5) / (height * 0.5 * share);
            const bool inside = across * across + down * down < 1;
            out.put(static_cast<char>(inside ? 1 + (x * 7 + y * 5) % 255 : 0));
        }
    }
}

// A stage of a background, three layers that drift past each other, and a crowd.
struct Crowd {
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("scene-bench-" + std::to_string(std::rand()));
    port::RuntimeConfig config;
    port::Renderer renderer;
    port::SpriteCache cache;
    port::World world;
    port::Scenery scenery;
    generated::Stage stage{};
    generated::Character model{};
    std::vector<generated::Layer> layers;
    std::vector<std::string> names;
    std::vector<generated::Frame> frames;
    std::vector<generated::Animation> animations;
    std::vector<port::SpritePtr> icons;
    port::DrawList list;

    Crowd(bool flipped, bool shadows) {
        std::filesystem::create_directories(folder / "sprites");
        config.logicalWidth = kWidth;
        config.logicalHeight = kHeight;
        if (!renderer.initialize(config)) std::abort();
        addStage();
        model.name = "somebody";
        model.shadow = shadows ? 2 : 0;
        writePicture(folder / "sprites/shadow2.bmp", 32, 10, 1);
        addCrowd(flipped);
        build();
    }
    ~Crowd() { std::filesystem::remove_all(folder); }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    void addStage() {
        stage.zMin = 160;
        stage.zMax = 260;
        world.stage.row = &stage;
        world.camera.x = 333;
        writePicture(folder / "sky.bmp", kWidth * 2, kHeight, 2);
        scenery.background = cache.load(renderer, folder, "sky.bmp", nullptr, 0);
        for (const float ratio : {0.3F, 0.6F, 1.2F}) {
            generated::Layer& layer = layers.emplace_back();
            layer.xRatio = ratio;
            layer.zOrder = 300;
        }
        writePicture(folder / "layer.bmp", 200, kHeight, 1.2);
        const port::SpritePtr layer = cache.load(renderer, folder, "layer.bmp", nullptr, 0);
        scenery.backgroundLayers = {{layer, port::LayerKind::Background, layers.data()},
                                    {layer, port::LayerKind::Background, &layers[1]}};
        scenery.foregroundLayers = {{layer, port::LayerKind::ForegroundLayer, &layers[2]}};
        writePicture(folder / "icon.bmp", 26, 24, 1);
        icons.assign(4, cache.load(renderer, folder, "icon.bmp", nullptr, 0));
    }

    void addCrowd(bool flipped) {
        for (int i = 0; i < kPictures; ++i) {
            names.push_back("somebody_walks_" + std::to_string(i) + ".bmp");
            writePicture(folder / names.back(), 64, 80, 0.6 + i * 0.01);
        }
        for (const std::string& name : names) {
            generated::Frame& frame = frames.emplace_back();
            frame.sprite = name.c_str();
            frame.offsetX = 32;
            frame.offsetY = 78;
            frame.draw.scaleX = frame.draw.scaleY = 1;
        }
        for (const generated::Frame& frame : frames) {
            generated::Animation& animation = animations.emplace_back();
            animation.frames = &frame;
            animation.frameCount = 1;
        }
        for (std::size_t i = 0; i < kActors; ++i) {
            port::RuntimeEntity actor;
            actor.model = &model;
            actor.animation.setAnimation(&animations[i % kPictures]);
            actor.shown = {&frames[i % kPictures], &model, 0};
            actor.worldX = 333.0F + static_cast<float>(i * 97 % kWidth);
            actor.z = 160.0F + static_cast<float>(i * 61 % 100);
            actor.facing = flipped && i % 2 == 0 ? -1 : 1;
            if (!world.entities.add(std::move(actor))) std::abort();
        }
    }

    void build() {
        list.clear();
        port::StageScene scene(world, scenery, config, {cache, renderer, folder}, list);
        scene.addScenery();
        scene.addActors();
        for (int i = 0; i < 4; ++i) {
            for (const int width : {72, 70, 50}) {
                list.add(port::SceneKind::Hud, stage.zMax + 10'050, 0, 0,
                         port::DrawRectangle{40 + i * 110, 10, width, 7, 0x40C020});
            }
            list.add(port::SceneKind::Hud, stage.zMax + 10'050, 0, 0,
                     port::DrawImage{icons[static_cast<std::size_t>(i)], 10 + i * 110, 6});
        }
        list.sort();
    }
};

struct Blit {
    std::shared_ptr<const port::SpriteImage> image;
    std::int64_t x, y;
};

// What of a list falls on the canvas, as pictures to be drawn as they are.
struct Blits {
    std::vector<Blit> all;

    explicit Blits(const port::DrawList& list) {
        for (const port::DrawShape& shape : list.backdrop()) std::visit(*this, shape);
        for (const port::DrawCommand& c : list.scene()) std::visit(*this, list.shape(c));
    }
    void operator()(const port::DrawImage& image) {
        all.push_back({image.image, image.x, image.y});
    }
    void operator()(const port::DrawTiles& tiles) {
        for (std::int64_t x = tiles.x; x < kWidth; x += tiles.stepX) {
            all.push_back({tiles.image, x, tiles.y});
        }
    }
    void operator()(const port::DrawSprite& sprite) {
        const port::SpriteAnchor anchor =
            port::transformedOpenBORAnchor(*sprite.image, *sprite.frame, sprite.flip);
        auto image = sprite.image;
        if (sprite.flip) {
            image = std::make_shared<const port::SpriteImage>(
                port::transformOpenBORSprite(*sprite.image, sprite.draw, true));
        }
        all.push_back({std::move(image), sprite.x - anchor.x, sprite.y - anchor.y});
    }
    template <class Rest>
    void operator()(const Rest&) {}
};

// Arguments: whether every second actor looks left, whether all cast shadows. Rounds alternate,
// because machines are shared; `ratio` is the whole to the blits, each at its median.
void wholeFrame(benchmark::State& state) {
    Crowd crowd(state.range(0) != 0, state.range(1) != 0);
    const Blits blits(crowd.list);
    port::SpriteImage canvas = crowd.renderer.canvas();
    std::vector<double> whole, bare;
    const auto timed = [](std::vector<double>& times, const auto& work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        benchmark::ClobberMemory();
        times.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    };
    std::size_t allocated = 0;
    for (auto _ : state) {
        timed(bare, [&] {
            for (const Blit& blit : blits.all) port::drawImage(canvas, *blit.image, blit.x, blit.y);
        });
        const std::size_t before = allocations;
        timed(whole, [&] {
            crowd.build();
            port::paint(crowd.list, crowd.renderer, crowd.config);
        });
        allocated = allocations - before;
        state.SetIterationTime(whole.back());
    }
    const auto median = [](std::vector<double>& times) {
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    };
    state.counters["bare_us"] = median(bare) * 1e6;
    state.counters["whole_us"] = median(whole) * 1e6;
    state.counters["ratio"] = median(whole) / median(bare);
    state.counters["allocations"] = static_cast<double>(allocated);
}

void buildingAlone(benchmark::State& state) {
    Crowd crowd(state.range(0) != 0, state.range(1) != 0);
    for (auto _ : state) crowd.build();
}

void arguments(benchmark::internal::Benchmark* bench) {
    bench->Unit(benchmark::kMicrosecond)->Args({0, 0})->Args({1, 0})->Args({1, 1});
}
BENCHMARK(wholeFrame)->Apply(arguments)->UseManualTime();
BENCHMARK(buildingAlone)->Apply(arguments);

}  // namespace

BENCHMARK_MAIN();
