// At which resolution to render: the composition's current one, or full.

#include "Crop.h"
#include "Kestrin_Strings.h"
#include "Operation.h"
#include "Preferences.h"
#include "Scripts.h"
#include "cropUtil.h"

A_long resChosen = 0;

namespace crop {
namespace {

constexpr A_long ask = 0;
constexpr A_long fullResolution = 1;
constexpr A_long currentResolution = 2;
constexpr char longestWord[] = "less than quarter";

const char* resolutionWord(short xFactor) {
    switch (xFactor) {
        case 2:
            return "half";
        case 3:
            return "third";
        case 4:
            return "quarter";
        default:
            return longestWord;
    }
}

// The answer's first two bytes as a little-endian number, less the digit zero: 1 and 2 for the one-character
// texts, else a number that is neither.
A_long numberOfAnswer(const char* text) {
    const int low = static_cast<unsigned char>(text[0]);
    const int high = low == 0 ? 0 : static_cast<unsigned char>(text[1]);
    return static_cast<A_short>(low | (high << 8)) - '0';
}

void askForResolution(AEGP_SuiteHandler& suites, Result& result, int pluginId, short xFactor) {
    char script[2048] = "";
    static_assert(sizeof scripts::resolutionQuestion + sizeof longestWord <= sizeof script);

    AEGP_MemHandle answer = nullptr;  // left to the host
    void* text = nullptr;
    cropUtil::SprintOS(script, sizeof script, scripts::resolutionQuestion, resolutionWord(xFactor));
    step(result, "ask for the resolution",
         [&] { return cropUtil::RunScript(suites, pluginId, script, &answer); });
    step(result, "lock the answer", [&] { return suites.MemorySuite1()->AEGP_LockMemHandle(answer, &text); });
    if (text != nullptr) {
        resChosen = numberOfAnswer(static_cast<const char*>(text));
    }
    step(result, "unlock the answer", [&] { return suites.MemorySuite1()->AEGP_UnlockMemHandle(answer); });
}

}  // namespace

A_Err checkResolution(SPBasicSuite* basic, int pluginId, AEGP_RenderOptionsH* renderOptions, short* xFactor,
                      short* yFactor, unsigned char* fullRes) {
    return operation(basic, [&](AEGP_SuiteHandler& suites, Result& result) {
        const AEGP_RenderOptionsSuite3* options = suites.RenderOptionsSuite3();
        step(result, "read the render resolution",
             [&] { return options->AEGP_GetDownsampleFactor(*renderOptions, xFactor, yFactor); });
        *fullRes = 0;
        if (*xFactor == 1 && *yFactor == 1) {
            return;
        }

        Preferences preferences(suites);
        A_long preferred = ask;
        step(result, "open the preferences", [&] { return preferences.open(); });
        step(result, "read Resolution", [&] { return preferences.readNumber(StrID_Resolution, &preferred); });
        if (preferred == currentResolution) {
            return;
        }
        if (preferred != fullResolution && resChosen == ask) {
            askForResolution(suites, result, pluginId, *xFactor);
        }
        if (preferred == fullResolution || resChosen == fullResolution) {
            step(result, "set full resolution", [&] {
                *fullRes = 1;
                return options->AEGP_SetDownsampleFactor(*renderOptions, 1, 1);
            });
        }
    });
}

}  // namespace crop
