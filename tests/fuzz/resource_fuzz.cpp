// The text that a script describes a dialog with, and the dialog that comes of it.

#include <nlohmann/json.hpp>

#include "fuzz/Fuzz.h"
#include "script/FakeHost.h"

namespace {

// Does something to every control, then closes.
class Curious : public headless::ui::Answerer {
 public:
    headless::ui::Action next(const headless::ui::Dialog& dialog) override {
        using Kind = headless::ui::Action::Kind;
        constexpr Kind kinds[] = {Kind::Press, Kind::SetText, Kind::Select, Kind::Enter};
        if (++asked_ % 10 == 0 || dialog.controls.empty()) {
            return {};
        }
        const auto place = static_cast<std::size_t>(asked_) % dialog.controls.size();
        return {kinds[asked_ % 4], dialog.controls[place].id, "12", asked_ % 3};
    }

 private:
    int asked_ = 0;
};

}  // namespace

void tryInput(const std::string& text) {
    static kestrin_test::FakeHost host;
    static Curious curious;
    host.answersFrom = &curious;
    static headless::script::Engine engine(host);
    const std::string quoted =
        nlohmann::json(text).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
    require(engine.run("var state = 'parsing'; try { var w = new Window(" + quoted +
                       "); state = 'showing'; w.show(); state = 'done'; }"
                       "catch (e) { '' + e; } state;")
                    .size() >= 4,
            "the script ends by itself");
    require(engine.run("1 + 1") == "2", "the engine goes on");
}
