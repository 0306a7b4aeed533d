// A project, the host around it and the real plug-in library: what a person does, and what comes of it.

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "render/Difference.h"
#include "session/Session.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {

using namespace headless;
using render::Picture;

// Answers each dialog by its title with a list of actions, the same ones every time it is shown.
class ScriptedAnswers : public ui::Answerer {
 public:
    // Presses the button after ticking the check boxes and choosing the list entry.
    void answer(const std::string& title, const std::string& button, std::vector<std::string> ticked = {},
                const std::string& entry = "") {
        answers_[title] = {button, std::move(ticked), entry};
    }
    ui::Action next(const ui::Dialog& dialog) override {
        const auto answer = answers_.find(dialog.title);
        if (answer == answers_.end()) {
            ADD_FAILURE() << "the dialog \"" << dialog.title << "\" has no answer";
            return {};
        }
        const auto& [button, ticked, entry] = answer->second;
        ui::Action last;  // the close box, unless the button is there
        std::string said;
        for (const ui::Control& control : dialog.controls) {
            if (!control.checked && std::count(ticked.begin(), ticked.end(), control.text) > 0) {
                return {ui::Action::Kind::Press, control.id, "", -1};
            }
            const auto found = std::find(control.items.begin(), control.items.end(), entry);
            const int index = static_cast<int>(found - control.items.begin());
            if (found != control.items.end() && control.selection != index) {
                return {ui::Action::Kind::Select, control.id, "", index};
            }
            if (control.kind == ui::Control::Kind::Button && control.text == button) {
                last = {ui::Action::Kind::Press, control.id, "", -1};
            }
            said += control.text + "\n";
        }
        ++shown[dialog.title];
        texts += said;
        return last;
    }

    std::map<std::string, int> shown;  // how often, by title
    std::string texts;                 // of all dialogs shown

 private:
    struct Answer {
        std::string button;
        std::vector<std::string> ticked;
        std::string entry;
    };
    std::map<std::string, Answer> answers_;
};

class Story : public ::testing::Test {
 protected:
    static constexpr const char* section = "Kestrin";

    void open(const CompSpec& spec, SessionOptions options = {}) {
        session.reset();
        opened = spec.text();
        session = std::make_unique<Session>(model::Project::read(opened), answers, std::move(options));
        session->loadPlugin(KESTRIN_PLUGIN);
        root = session->project().root().item->name;
    }

    model::Project& project() { return session->project(); }
    model::Comp& comp(const std::string& name) {
        for (const model::ItemPtr& item : project().items) {
            if (item->comp && item->name == name) {
                return *item->comp;
            }
        }
        throw std::runtime_error("there is no composition " + name);
    }
    // The first of that name, in the root unless said otherwise.
    model::Layer& layer(const std::string& name, const std::string& in = "") {
        for (const model::LayerPtr& layer : comp(in.empty() ? root : in).layers) {
            if (project().nameOf(*layer) == name) {
                return *layer;
            }
        }
        throw std::runtime_error("there is no layer " + name);
    }
    Size sizeOf(const std::string& name) { return comp(name).item->size; }
    Picture pictureOf(const std::string& name, double frame = 0) {
        return session->pictures().picture(comp(name), frame);
    }

    void select(const std::vector<std::string>& layers) {
        std::vector<model::SelectedThing> things;
        for (const std::string& name : layers) {
            things.push_back({layer(name).id, -1});
        }
        session->select(comp(root), things);
    }
    // A layer of the root together with one of its masks.
    void selectMask(const std::string& name, int mask) {
        session->select(comp(root), {{layer(name).id, -1}, {layer(name).id, mask}});
    }
    void moveTo(double frame) { comp(root).currentFrame = frame; }

    // As long as the keys are held, the menu entry stands for another command.
    A_Err runHolding(bool shift, bool command) {
        session->openMenu();
        session->holdKeys(shift, command);
        EXPECT_EQ(session->tick(), 0);
        session->holdKeys(false, false);
        const A_Err error = run();
        EXPECT_EQ(session->tick(), 0);
        return error;
    }
    A_Err runDuration() { return runHolding(false, true); }
    A_Err runMaskCrop() { return runHolding(true, true); }
    A_Err runPreferences() { return runHolding(true, false); }

    A_Err run() { return session->runCommand(session->pluginCommand()); }
    bool undo() { return project().history.undo(); }

    // Texts of the alerts so far, and of errors.
    std::vector<std::string> messages(Message::Kind kind) {
        std::vector<std::string> texts;
        for (const Message& message : session->messages()) {
            if (message.kind == kind) {
                texts.push_back(message.text);
            }
        }
        return texts;
    }
    std::vector<std::string> alerts() { return messages(Message::Kind::Alert); }

    model::Preferences& preferences() { return session->preferences(); }
    void pad(int amount) {
        preferences().setBool(section, "Padding", true);
        preferences().setFloat(section, "PaddingAmount", amount);
    }

    void expectNear(const model::Vec3& actual, const model::Vec3& expected) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(actual[axis], expected[axis], 0.0005) << "axis " << axis;
        }
    }

    // To the eye: no channel differs by more than 2 of 255.
    void expectSame(const Picture& actual, const Picture& expected) {
        ASSERT_EQ(actual.width, expected.width);
        ASSERT_EQ(actual.height, expected.height);
        const render::Difference difference = render::difference(actual, expected);
        EXPECT_EQ(difference.count, 0u)
            << "largest " << difference.largest << " at " << difference.worst.x << ", " << difference.worst.y;
    }

    // Nothing held, nothing acquired, nothing left in the project.
    void expectNothingOpen() {
        EXPECT_EQ(session->stillOpen(), std::vector<std::string>());
        EXPECT_EQ(session->held(), HeldThings());
        for (const model::ItemPtr& item : project().items) {
            EXPECT_NE(item->name, "Kestrin Null");
        }
    }

    void TearDown() override {
        if (HasFailure() && session) {
            for (const std::string& call : session->calls().last) {
                std::cerr << "  " << call << "\n";
            }
        }
    }

    ScriptedAnswers answers;
    std::unique_ptr<Session> session;
    std::string opened;
    std::string root;
};

}  // namespace kestrin_test
