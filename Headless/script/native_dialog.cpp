// Hands an open dialog's state to the answerer and brings the action back.

#include <map>

#include "script/Call.h"

namespace headless::script {
namespace {

using ui::Action;
using ui::Control;

// The library's name of each control type.
Control::Kind kindOf(const std::string& type) {
    static const std::map<std::string, Control::Kind> kinds{
        {"group", Control::Kind::Group},           {"panel", Control::Kind::Panel},
        {"statictext", Control::Kind::StaticText}, {"edittext", Control::Kind::EditText},
        {"checkbox", Control::Kind::CheckBox},     {"radiobutton", Control::Kind::RadioButton},
        {"button", Control::Kind::Button},         {"dropdownlist", Control::Kind::DropDownList},
        {"listbox", Control::Kind::ListBox}};
    return kinds.at(type);
}

const char* nameOf(Action::Kind kind) {
    switch (kind) {
        case Action::Kind::Press:
            return "press";
        case Action::Kind::SetText:
            return "setText";
        case Action::Kind::Select:
            return "select";
        case Action::Kind::Enter:
            return "enter";
        case Action::Kind::Escape:
            return "escape";
        case Action::Kind::CloseBox:
            break;
    }
    return "closeBox";
}

// Reads members of the plain object on top of the stack.
class Members {
    auto read(const char* name, const auto& take) const {
        duk_get_prop_string(call_.context(), -1, name);
        auto value = take();
        duk_pop(call_.context());
        return value;
    }

 public:
    explicit Members(const Call& call) : call_(call) {}

    std::string text(const char* name) const {
        return read(name, [&] { return call_.text(-1); });
    }
    int integer(const char* name) const {
        return read(name, [&] { return call_.integer(-1); });
    }
    bool flag(const char* name) const {
        return read(name, [&] { return call_.flag(-1); });
    }

 private:
    const Call& call_;
};

// Calls `each` with every element of the array on top of the stack, that element being on top.
void forEach(duk_context* context, const auto& each) {
    const auto count = static_cast<duk_uarridx_t>(duk_get_length(context, -1));
    for (duk_uarridx_t i = 0; i < count; ++i) {
        duk_get_prop_index(context, -1, i);
        each();
        duk_pop(context);
    }
}

Control control(const Call& call) {
    const Members members(call);
    Control result;
    result.kind = kindOf(members.text("type"));
    result.id = members.integer("id");
    result.depth = members.integer("depth");
    result.text = members.text("text");
    result.checked = members.flag("checked");
    result.selection = members.integer("selection");
    result.enabled = members.flag("enabled");
    result.visible = members.flag("visible");
    duk_get_prop_string(call.context(), -1, "items");
    forEach(call.context(), [&] { result.items.push_back(call.text(-1)); });
    duk_pop(call.context());
    return result;
}

void ask(const Call& call) {
    duk_context* context = call.context();
    duk_dup(context, 0);
    ui::Dialog dialog;
    dialog.showing = Members(call).integer("showing");
    dialog.title = Members(call).text("title");
    duk_get_prop_string(context, -1, "controls");
    forEach(context, [&] { dialog.controls.push_back(control(call)); });
    duk_pop_2(context);

    const Action action = call.host().answerer().next(dialog);
    duk_push_object(context);
    call.member("kind", std::string(nameOf(action.kind)));
    call.member("control", double(action.control));
    call.member("text", action.text);
    call.member("selection", double(action.selection));
}

constexpr duk_function_list_entry functions[] = {{"ask", native<ask>, 1}, {nullptr, nullptr, 0}};

}  // namespace

void addDialogFunctions(duk_context* context) {
    duk_put_function_list(context, -1, functions);
}

}  // namespace headless::script
