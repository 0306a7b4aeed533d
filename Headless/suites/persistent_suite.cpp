// The preference store. Reading an absent key writes the default into the store, as the host does.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

A_Err getApplicationBlob(AEGP_PersistentBlobH* blob) noexcept {
    return gate("AEGP_GetApplicationBlob", [&](Session& session) { needHandle(blob) = session.blobHandle(); });
}

A_Err getData(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key, A_u_long size,
              const void* defaultValue, void* value) noexcept {
    return gate("AEGP_GetData", [&](Session& session) {
        session.requireBlob(blob);
        auto* out = static_cast<std::uint8_t*>(value);
        need(out);
        auto stored = session.preferences().getData(&need(section), &need(key));
        if (!stored) {
            stored.emplace(size);
            if (defaultValue != nullptr) {
                std::memcpy(stored->data(), defaultValue, size);
            }
            session.preferences().setData(section, key, *stored);
        }
        if (stored->size() != size) {
            throw HostError{A_Err_GENERIC, std::string("the preference \"") + key + "\" holds " +
                                               std::to_string(stored->size()) + " bytes and not " +
                                               std::to_string(size)};
        }
        std::memcpy(out, stored->data(), size);
    });
}

A_Err getLong(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key, A_long defaultValue,
              A_long* value) noexcept {
    return gate("AEGP_GetLong", [&](Session& session) {
        session.requireBlob(blob);
        A_long& out = need(value);
        model::Preferences& preferences = session.preferences();
        if (!preferences.has(&need(section), &need(key))) {
            preferences.setLong(section, key, defaultValue);
        }
        out = preferences.getLongIfNumber(section, key).value_or(defaultValue);
    });
}

A_Err deleteEntry(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key) noexcept {
    return gate("AEGP_DeleteEntry", [&](Session& session) {
        session.requireBlob(blob);
        session.preferences().remove(&need(section), &need(key));
    });
}

}  // namespace

const AEGP_PersistentDataSuite3 tablePersistentDataSuite3 =
    makeTable<AEGP_PersistentDataSuite3>([](auto& table) {
        table.AEGP_GetApplicationBlob = getApplicationBlob;
        table.AEGP_GetData = getData;
        table.AEGP_GetLong = getLong;
        table.AEGP_DeleteEntry = deleteEntry;
    });

}  // namespace headless
