#include "AEGP_SuiteHandler.h"

namespace {

struct SuiteName {
    const char* name;
    std::int32_t number;
};

#define KESTRIN_NAME(label, name, number) SuiteName{name, number},
constexpr SuiteName suiteNames[] = {AEGP_FOR_EACH_SUITE(KESTRIN_NAME)};
#undef KESTRIN_NAME

}  // namespace

AEGP_SuiteHandler::~AEGP_SuiteHandler() {
    for (std::size_t i = 0; i < acquired_.size(); ++i) {
        if (acquired_[i] != nullptr) {
            basic_->ReleaseSuite(suiteNames[i].name, suiteNames[i].number);
        }
    }
}

const void* AEGP_SuiteHandler::acquire(Index index) {
    const auto i = static_cast<std::size_t>(index);
    if (acquired_[i] == nullptr) {
        const void* suite = nullptr;
        if (basic_ == nullptr || basic_->AcquireSuite(suiteNames[i].name, suiteNames[i].number, &suite) != 0 ||
            suite == nullptr) {
            MissingSuiteError();
        }
        acquired_[i] = suite;
    }
    return acquired_[i];
}
