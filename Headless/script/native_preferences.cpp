// The preference store, section and key first. Absent keys give undefined.

#include "script/Call.h"

namespace headless::script {
namespace {

template <auto Get>
void get(const Call& call) {
    if (const auto value = (call.host().preferences().*Get)(call.text(0), call.text(1))) call.result(*value);
}

void getLong(const Call& call) {
    if (const auto value = call.host().preferences().getLong(call.text(0), call.text(1))) {
        call.result(double(*value));
    }
}

void has(const Call& call) {
    call.result(call.host().preferences().has(call.text(0), call.text(1)));
}

void setBool(const Call& call) {
    call.host().preferences().setBool(call.text(0), call.text(1), call.flag(2));
}

void setLong(const Call& call) {
    call.host().preferences().setLong(call.text(0), call.text(1), duk_to_int32(call.context(), 2));
}

void setFloat(const Call& call) {
    call.host().preferences().setFloat(call.text(0), call.text(1), call.number(2));
}

void setString(const Call& call) {
    call.host().preferences().setString(call.text(0), call.text(1), call.text(2));
}

void remove(const Call& call) {
    call.host().preferences().remove(call.text(0), call.text(1));
}

void save(const Call& call) {
    call.host().savePreferences();
}

void reload(const Call& call) {
    call.host().reloadPreferences();
}

constexpr duk_function_list_entry functions[] = {
    {"getPrefAsBool", native<get<&model::Preferences::getBool>>, 2},
    {"getPrefAsLong", native<getLong>, 2},
    {"getPrefAsFloat", native<get<&model::Preferences::getFloat>>, 2},
    {"getPrefAsString", native<get<&model::Preferences::getString>>, 2},
    {"havePref", native<has>, 2},
    {"savePrefAsBool", native<setBool>, 3},
    {"savePrefAsLong", native<setLong>, 3},
    {"savePrefAsFloat", native<setFloat>, 3},
    {"savePrefAsString", native<setString>, 3},
    {"deletePref", native<remove>, 2},
    {"savePreferences", native<save>, 0},
    {"reloadPreferences", native<reload>, 0},
    {nullptr, nullptr, 0},
};

}  // namespace

void addPreferenceFunctions(duk_context* context) {
    duk_put_function_list(context, -1, functions);
}

}  // namespace headless::script
