#include "render/thorvg/ThorVG.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "Module.h"
#include "names.h"
#include "wasm-rt-impl.h"

namespace headless::render {
namespace {

constexpr std::uint32_t pageBytes = 65536;
// The module's own memory never gets so far; what it draws into lies there.
constexpr std::uint32_t targetAddress = 1u << 31;

// As in the module's interface.
enum Result : std::uint32_t { success = 0, nothingToDo = 2 };
constexpr std::uint32_t premultipliedArgb = 1;

// No object with a destructor may live in `action`: it is left by a jump where the module stops.
int untilItStops(void (*action)(void*), void* context) {
    const int trap = wasm_rt_impl_try();
    if (trap == 0) action(context);
    return trap;
}

}  // namespace

struct ThorVG::Module {
    Z_a_instance_t host{};
    Z_thorvg_instance_t instance{};
    bool instantiated = false;

    ~Module() {
        if (instantiated) Z_thorvg_free(&instance);
    }
};

ThorVG::ThorVG(std::uint64_t memoryBytes) : module_(std::make_unique<Module>()) {
    wasm_rt_init();
    static const bool once = (Z_thorvg_init_module(), true);
    (void)once;
    Module& module = *module_;
    module.host.module = &module.instance;
    module.host.mostPages =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(memoryBytes, targetAddress) / pageBytes);
    call([&] {
        Z_thorvg_instantiate(&module.instance, &module.host);
        module.instantiated = true;
        widenChecks(module.instance);
        module_construct(&module.instance);
        module_tvg_engine_init(&module.instance, 0);
        canvas_ = module_tvg_swcanvas_create(&module.instance, 0);
    });
}

ThorVG::~ThorVG() {
    if (target_.file >= 0) aimAt({});
}

template <class Call>
void ThorVG::call(Call&& action) {
    Z_a_instance_t& host = module_->host;
    host.handler = nullptr;
    const int trap =
        untilItStops([](void* context) { (*static_cast<std::remove_reference_t<Call>*>(context))(); }, &action);
    if (trap == 0) return;
    if (host.outOfMemory) throw ModuleOutOfMemory();
    throw ModuleFault(host.reason[0] != '\0' ? host.reason
                                             : wasm_rt_strerror(static_cast<wasm_rt_trap_t>(trap)));
}

std::uint32_t ThorVG::copied(std::string_view bytes) {
    const auto size = static_cast<std::uint32_t>(bytes.size());
    if (bytes.size() >= targetAddress) throw ModuleOutOfMemory();
    std::uint32_t place = 0;
    call([&] { place = module_malloc(&module_->instance, std::max(size, 1u)); });
    if (place == 0) throw ModuleOutOfMemory();
    std::memcpy(module_memory(&module_->instance)->data + place, bytes.data(), bytes.size());
    return place;
}

bool ThorVG::addFont(const std::string& name, std::string_view file) {
    using namespace std::string_view_literals;
    const std::uint32_t itsName = copied({name.c_str(), name.size() + 1});
    const std::uint32_t data = copied(file);
    const std::uint32_t type = copied("ttf\0"sv);
    std::uint32_t result = success;
    call([&] {
        Z_thorvg_instance_t* const module = &module_->instance;
        result =
            module_tvg_font_load_data(module, itsName, data, static_cast<std::uint32_t>(file.size()), type, 1);
        for (const std::uint32_t place : {itsName, data, type}) module_free(module, place);
    });
    return result == success;
}

bool ThorVG::load(std::string_view document) {
    using namespace std::string_view_literals;
    drop();
    const std::uint32_t data = copied(document);
    const std::uint32_t type = copied("lottie+json\0"sv);
    const std::uint32_t folder = copied("\0"sv);
    std::uint32_t result = success;
    call([&] {
        Z_thorvg_instance_t* const module = &module_->instance;
        animation_ = module_tvg_animation_new(module);
        picture_ = module_tvg_animation_get_picture(module, animation_);
        result = module_tvg_picture_load_data(module, picture_, data,
                                              static_cast<std::uint32_t>(document.size()), type, folder, 1);
        for (const std::uint32_t place : {data, type, folder}) module_free(module, place);
        if (result == success) {
            result = module_tvg_canvas_add(module, canvas_, picture_);
        } else {
            module_tvg_animation_del(module, animation_);
            animation_ = 0;
        }
    });
    return animation_ != 0 && result == success;
}

void ThorVG::drop() {
    if (animation_ == 0) return;
    call([&] {
        module_tvg_canvas_remove(&module_->instance, canvas_, picture_);
        module_tvg_animation_del(&module_->instance, animation_);
    });
    animation_ = picture_ = 0;
    pictureWidth_ = pictureHeight_ = 0;
}

// Puts the file's memory where the module can reach it, or takes away what is there.
void ThorVG::aimAt(const Target& target) {
    const auto page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    std::byte* const place =
        reinterpret_cast<std::byte*>(module_memory(&module_->instance)->data) + targetAddress;
    if (target_.file >= 0) {
        const std::size_t size = target_.offset % page + target_.rowBytes * target_.height;
        ::mmap(place, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED, -1, 0);
        target_ = {};
    }
    if (target.file < 0) return;
    const std::uint64_t before = target.offset % page;
    const std::uint64_t size =
        before + std::uint64_t{target.rowBytes} * static_cast<std::uint64_t>(target.height);
    if (size > UINT32_MAX - targetAddress ||
        ::mmap(place, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, target.file,
               static_cast<off_t>(target.offset - before)) == MAP_FAILED) {
        throw ModuleOutOfMemory();
    }
    target_ = target;
    std::uint32_t result = success;
    call([&] {
        result = module_tvg_swcanvas_set_target(
            &module_->instance, canvas_, targetAddress + static_cast<std::uint32_t>(before),
            static_cast<std::uint32_t>(target.rowBytes / 4), static_cast<std::uint32_t>(target.width),
            static_cast<std::uint32_t>(target.height), premultipliedArgb);
    });
    if (result != success) throw ModuleFault("it refuses what it is to draw into");
}

void ThorVG::draw(float frame, const Target& target) {
    if (!(target == target_)) aimAt(target);
    // Cleared here, since the module would do so word by word.
    std::byte* row = reinterpret_cast<std::byte*>(module_memory(&module_->instance)->data) + targetAddress +
                     target.offset % static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    for (int y = 0; y < target.height; ++y, row += target.rowBytes) {
        std::memset(row, 0, static_cast<std::size_t>(target.width) * sizeof(std::uint32_t));
    }
    std::uint32_t results[5] = {};
    call([&] {
        Z_thorvg_instance_t* const module = &module_->instance;
        if (pictureWidth_ != target.width || pictureHeight_ != target.height) {
            results[0] = module_tvg_picture_set_size(module, picture_, static_cast<float>(target.width),
                                                     static_cast<float>(target.height));
        }
        results[1] = module_tvg_animation_set_frame(module, animation_, frame);
        results[2] = module_tvg_canvas_update(module, canvas_);
        results[3] = module_tvg_canvas_draw(module, canvas_, 0);
        results[4] = module_tvg_canvas_sync(module, canvas_);
    });
    pictureWidth_ = target.width;
    pictureHeight_ = target.height;
    for (const std::uint32_t result : results) {
        if (result != success && result != nothingToDo) throw ModuleFault("it cannot draw the frame");
    }
}

}  // namespace headless::render
