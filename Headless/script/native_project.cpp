// Items and layers. Layers go by their id as text, since a number of the engine holds 53 bits only.

#include "script/Call.h"

namespace headless::script {
namespace {

LayerId layerId(const Call& call, duk_idx_t index) {
    return std::stoull(call.text(index));
}

void itemCount(const Call& call) {
    call.result(double(call.host().itemCount()));
}

void itemIdAt(const Call& call) {
    call.result(double(call.host().itemAt(call.integer(0)).id));
}

void activeItem(const Call& call) {
    if (const auto id = call.host().activeItem()) {
        call.result(double(*id));
    } else {
        duk_push_null(call.context());
    }
}

void item(const Call& call) {
    const ItemInfo info = call.host().item(call.integer(0));
    duk_push_object(call.context());
    call.member("name", info.name);
    call.member("isComp", info.isComp);
    call.member("width", double(info.width));
    call.member("height", double(info.height));
    call.member("layerCount", double(info.layerCount));
}

void layerAt(const Call& call) {
    call.result(std::to_string(call.host().layerAt(call.integer(0), call.integer(1))));
}

void selectedLayers(const Call& call) {
    duk_push_array(call.context());
    duk_uarridx_t place = 0;
    for (const LayerId id : call.host().selectedLayers(call.integer(0))) {
        call.result(std::to_string(id));
        duk_put_prop_index(call.context(), -2, place++);
    }
}

void layer(const Call& call) {
    const LayerInfo info = call.host().layer(layerId(call, 0));
    duk_push_object(call.context());
    call.member("name", info.name);
    call.member("index", double(info.index));
    call.member("hasSourceMember", info.hasSourceMember);
    if (info.source) call.member("source", double(*info.source));
    call.member("width", double(info.width));
    call.member("height", double(info.height));
    if (info.parent) call.member("parent", std::to_string(*info.parent));
    duk_push_array(call.context());
    duk_uarridx_t place = 0;
    for (const std::string& name : info.maskNames) {
        call.result(name);
        duk_put_prop_index(call.context(), -2, place++);
    }
    duk_put_prop_string(call.context(), -2, "maskNames");
}

void setParent(const Call& call) {
    call.host().setParent(layerId(call, 0), call.isGiven(1) ? std::optional(layerId(call, 1)) : std::nullopt);
}

void alert(const Call& call) {
    call.host().alert(call.text(0), call.text(1), call.flag(2));
}

constexpr duk_function_list_entry functions[] = {
    {"itemCount", native<itemCount>, 0},   {"itemIdAt", native<itemIdAt>, 1},
    {"activeItem", native<activeItem>, 0}, {"item", native<item>, 1},
    {"layerAt", native<layerAt>, 2},       {"selectedLayers", native<selectedLayers>, 1},
    {"layer", native<layer>, 1},           {"setParent", native<setParent>, 2},
    {"alert", native<alert>, 3},           {nullptr, nullptr, 0},
};

}  // namespace

void addProjectFunctions(duk_context* context) {
    duk_put_function_list(context, -1, functions);
}

}  // namespace headless::script
