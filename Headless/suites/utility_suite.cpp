// Reports, undo groups, scripts, and memory that the host hands out.

#include "suites/Gate.h"
#include "suites/Tables.h"

namespace headless {

namespace {

A_Err reportInfo(AEGP_PluginID, const A_char* text) noexcept {
    return gate("AEGP_ReportInfo", [&](Session& session) {
        session.addMessage({Message::Kind::Report, "Kestrin", &need(text)});
    });
}

A_Err startUndoGroup(const A_char* name) noexcept {
    return gate("AEGP_StartUndoGroup", [&](Session& session) { session.beginUndoGroup(&need(name)); });
}

A_Err endUndoGroup() noexcept {
    return gate("AEGP_EndUndoGroup", [](Session& session) { session.endUndoGroup(); });
}

A_Err executeScript(AEGP_PluginID, const A_char* text, A_Boolean, AEGP_MemHandle* result,
                    AEGP_MemHandle* errorText) noexcept {
    return gate("AEGP_ExecuteScript", [&](Session& session) {
        if (result != nullptr) {
            *result = nullptr;
        }
        if (errorText != nullptr) {
            *errorText = nullptr;
        }
        const auto give = [&](AEGP_MemHandle* to, const std::string& value) {
            if (to != nullptr) {
                *to = session.newMemory(value.c_str(), value.size() + 1, "AEGP_ExecuteScript");
            }
        };
        try {
            if (const auto answer = session.runScript(&need(text))) {
                give(result, *answer);
            }
            give(errorText, "");
        } catch (const script::ScriptError& error) {
            const std::string message = "line " + std::to_string(error.line) + ": " + error.what();
            give(errorText, message);
            throw HostError{A_Err_GENERIC, "the script failed at " + message};
        }
    });
}

Session::Memory& memoryAt(Session& session, AEGP_MemHandle handle) {
    return session.memory.at(bits(handle));
}

A_Err freeMemHandle(AEGP_MemHandle handle) noexcept {
    return gate("AEGP_FreeMemHandle", [&](Session& session) {
        if (memoryAt(session, handle).locks > 0) {
            ++session.freedWhileLocked;
        }
        session.memory.remove(bits(handle));
    });
}

A_Err lockMemHandle(AEGP_MemHandle handle, void** address) noexcept {
    return gate("AEGP_LockMemHandle", [&](Session& session) {
        need(address) = nullptr;
        Session::Memory& memory = memoryAt(session, handle);
        ++memory.locks;
        *address = memory.bytes.data();
    });
}

A_Err unlockMemHandle(AEGP_MemHandle handle) noexcept {
    return gate("AEGP_UnlockMemHandle", [&](Session& session) {
        Session::Memory& memory = memoryAt(session, handle);
        if (memory.locks == 0) {
            throw HostError{A_Err_PARAMETER, "the memory handle is not locked"};
        }
        --memory.locks;
    });
}

A_Err getMemHandleSize(AEGP_MemHandle handle, AEGP_MemSize* size) noexcept {
    return gate("AEGP_GetMemHandleSize", [&](Session& session) {
        need(size) = static_cast<AEGP_MemSize>(memoryAt(session, handle).bytes.size());
    });
}

}  // namespace

const AEGP_UtilitySuite5 tableUtilitySuite5 = makeTable<AEGP_UtilitySuite5>([](auto& table) {
    table.AEGP_ReportInfo = reportInfo;
    table.AEGP_StartUndoGroup = startUndoGroup;
    table.AEGP_EndUndoGroup = endUndoGroup;
    table.AEGP_ExecuteScript = executeScript;
});

const AEGP_MemorySuite1 tableMemorySuite1 = makeTable<AEGP_MemorySuite1>([](auto& table) {
    table.AEGP_FreeMemHandle = freeMemHandle;
    table.AEGP_LockMemHandle = lockMemHandle;
    table.AEGP_UnlockMemHandle = unlockMemHandle;
    table.AEGP_GetMemHandleSize = getMemHandleSize;
});

}  // namespace headless
