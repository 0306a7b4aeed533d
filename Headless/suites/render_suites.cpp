// Render options, rendered frames, and their pixels.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

constexpr A_short largestDownsample = 99;

Session::RenderOptions& optionsAt(Session& session, AEGP_RenderOptionsH options) {
    return session.options.at(bits(options));
}

A_Err newFromItem(AEGP_PluginID, AEGP_ItemH item, AEGP_RenderOptionsH* options) noexcept {
    return gate("AEGP_NewFromItem", [&](Session& session) {
        needHandle(options);
        const model::Item& what = session.item(item);
        Session::RenderOptions made;
        made.item = what.id;
        made.time = session.timeOf(0);
        made.timeStep = session.timeOf(1);
        if (what.comp) {
            made.timeStep = session.timeOf(session.project().frameRate() / what.comp->frameRate);
            made.factorX = static_cast<A_short>(what.comp->downsampleX);
            made.factorY = static_cast<A_short>(what.comp->downsampleY);
        }
        *options = reinterpret_cast<AEGP_RenderOptionsH>(session.options.add(made, "AEGP_NewFromItem"));
    });
}

A_Err disposeOptions(AEGP_RenderOptionsH options) noexcept {
    return gate("AEGP_Dispose", [&](Session& session) { session.options.remove(bits(options)); });
}

A_Err setTime(AEGP_RenderOptionsH options, A_Time time) noexcept {
    return gate("AEGP_SetTime", [&](Session& session) {
        session.framesOf(time);  // refuses what is no time
        optionsAt(session, options).time = time;
    });
}

A_Err getTime(AEGP_RenderOptionsH options, A_Time* time) noexcept {
    return gate("AEGP_GetTime", [&](Session& session) { need(time) = optionsAt(session, options).time; });
}

A_Err getTimeStep(AEGP_RenderOptionsH options, A_Time* step) noexcept {
    return gate("AEGP_GetTimeStep",
                [&](Session& session) { need(step) = optionsAt(session, options).timeStep; });
}

A_Err setDownsampleFactor(AEGP_RenderOptionsH options, A_short x, A_short y) noexcept {
    return gate("AEGP_SetDownsampleFactor", [&](Session& session) {
        if (x < 1 || y < 1 || x > largestDownsample || y > largestDownsample) {
            throw HostError{A_Err_PARAMETER, "downsample factors go from 1 to 99"};
        }
        Session::RenderOptions& what = optionsAt(session, options);
        what.factorX = x;
        what.factorY = y;
    });
}

A_Err getDownsampleFactor(AEGP_RenderOptionsH options, A_short* x, A_short* y) noexcept {
    return gate("AEGP_GetDownsampleFactor", [&](Session& session) {
        const Session::RenderOptions& what = optionsAt(session, options);
        need(x);
        need(y) = what.factorY;
        *x = what.factorX;
    });
}

// ---- Frames ---------------------------------------------------------------------------------------------

A_Err renderAndCheckoutFrame(AEGP_RenderOptionsH options, AEGP_RenderSuiteCheckForCancel, AEGP_CancelRefcon,
                             AEGP_FrameReceiptH* receipt) noexcept {
    return gate("AEGP_RenderAndCheckoutFrame", [&](Session& session) {
        needHandle(receipt);
        const auto world = session.worlds.add(session.renderedWorld(optionsAt(session, options)),
                                              "AEGP_RenderAndCheckoutFrame");
        *receipt =
            reinterpret_cast<AEGP_FrameReceiptH>(session.receipts.add({world}, "AEGP_RenderAndCheckoutFrame"));
    });
}

A_Err checkinFrame(AEGP_FrameReceiptH receipt) noexcept {
    return gate("AEGP_CheckinFrame", [&](Session& session) {
        session.worlds.remove(session.receipts.at(bits(receipt)).world);
        session.receipts.remove(bits(receipt));
    });
}

A_Err getReceiptWorld(AEGP_FrameReceiptH receipt, AEGP_WorldH* world) noexcept {
    return gate("AEGP_GetReceiptWorld", [&](Session& session) {
        needHandle(world);
        *world = reinterpret_cast<AEGP_WorldH>(session.receipts.at(bits(receipt)).world);
    });
}

// ---- Pixels ---------------------------------------------------------------------------------------------

render::World& worldAt(Session& session, AEGP_WorldH world) {
    return session.worlds.at(bits(world));
}

A_Err disposeWorld(AEGP_WorldH world) noexcept {
    return gate("AEGP_Dispose", [&](Session& session) {
        worldAt(session, world);
        throw HostError{A_Err_PARAMETER,
                        "a rendered frame goes when it is checked in, and cannot be disposed of"};
    });
}

A_Err getType(AEGP_WorldH world, AEGP_WorldType* type) noexcept {
    return gate("AEGP_GetType", [&](Session& session) {
        need(type) = static_cast<AEGP_WorldType>(worldAt(session, world).depth);
    });
}

A_Err getSize(AEGP_WorldH world, A_long* width, A_long* height) noexcept {
    return gate("AEGP_GetSize", [&](Session& session) {
        const render::World& what = worldAt(session, world);
        need(width);
        need(height) = what.height;
        *width = what.width;
    });
}

A_Err getRowBytes(AEGP_WorldH world, A_u_long* rowBytes) noexcept {
    return gate("AEGP_GetRowBytes", [&](Session& session) {
        need(rowBytes) = static_cast<A_u_long>(worldAt(session, world).rowBytes());
    });
}

template <class Pixel>
A_Err getBaseAddress(const char* name, AEGP_WorldH world, render::Depth depth, Pixel** address) noexcept {
    return gate(name, [&](Session& session) {
        need(address) = nullptr;
        render::World& what = worldAt(session, world);
        if (what.depth != depth) {
            throw HostError{A_Err_GENERIC, "the frame has another depth"};
        }
        *address = reinterpret_cast<Pixel*>(what.memory.get());
    });
}

A_Err getBaseAddr8(AEGP_WorldH world, PF_Pixel8** address) noexcept {
    return getBaseAddress("AEGP_GetBaseAddr8", world, render::Depth::Bits8, address);
}

A_Err getBaseAddr16(AEGP_WorldH world, PF_Pixel16** address) noexcept {
    return getBaseAddress("AEGP_GetBaseAddr16", world, render::Depth::Bits16, address);
}

A_Err getBaseAddr32(AEGP_WorldH world, PF_PixelFloat** address) noexcept {
    return getBaseAddress("AEGP_GetBaseAddr32", world, render::Depth::Bits32, address);
}

}  // namespace

const AEGP_RenderOptionsSuite3 tableRenderOptionsSuite3 = makeTable<AEGP_RenderOptionsSuite3>([](auto& table) {
    table.AEGP_NewFromItem = newFromItem;
    table.AEGP_Dispose = disposeOptions;
    table.AEGP_SetTime = setTime;
    table.AEGP_GetTime = getTime;
    table.AEGP_GetTimeStep = getTimeStep;
    table.AEGP_SetDownsampleFactor = setDownsampleFactor;
    table.AEGP_GetDownsampleFactor = getDownsampleFactor;
});

const AEGP_RenderSuite3 tableRenderSuite3 = makeTable<AEGP_RenderSuite3>([](auto& table) {
    table.AEGP_RenderAndCheckoutFrame = renderAndCheckoutFrame;
    table.AEGP_CheckinFrame = checkinFrame;
    table.AEGP_GetReceiptWorld = getReceiptWorld;
});

const AEGP_WorldSuite3 tableWorldSuite3 = makeTable<AEGP_WorldSuite3>([](auto& table) {
    table.AEGP_Dispose = disposeWorld;
    table.AEGP_GetType = getType;
    table.AEGP_GetSize = getSize;
    table.AEGP_GetRowBytes = getRowBytes;
    table.AEGP_GetBaseAddr8 = getBaseAddr8;
    table.AEGP_GetBaseAddr16 = getBaseAddr16;
    table.AEGP_GetBaseAddr32 = getBaseAddr32;
});

}  // namespace headless
