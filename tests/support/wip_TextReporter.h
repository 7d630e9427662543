#pragma once

#include "wip_WipReporter.h"

#include <string>

/// Writes down each report as a line.
class wip_TextReporter : public wip_WipReporter {
public:
    void Error(const atr_String& message, wip_errorLevelEnm level) override {
        Note("Error", message, std::to_string(level));
    }
    void Warning(const atr_String& message) override { Note("Warning", message); }
    void ErrorList(const cow_List<atr_String>& messages, wip_errorLevelEnm level) override {
        Note("ErrorList", Joined(messages), std::to_string(level));
    }
    void WarningList(const cow_List<atr_String>& messages) override {
        Note("WarningList", Joined(messages));
    }
    void Verbose(const atr_String& message) override { Note("Verbose", message); }
    void Milestone(const atr_String& message, int number) override {
        Note("Milestone", message, std::to_string(number));
    }
    void Milestone(const atr_String& message, const atr_String& object, int done,
                   int total) override {
        Note("Milestone", message, object, std::to_string(done), std::to_string(total));
    }
    void Milestone(const atr_String& message) override { Note("Milestone", message); }
    void Landmark(const atr_String& message) override { Note("Landmark", message); }
    void Print(const atr_String& message) override { Note("Print", message); }
    void Display(const atr_String& message) override { Note("Display", message); }
    int Interrupted() override {
        Note("Interrupted");
        return 17;
    }
    void CommandDone() override { Note("CommandDone"); }
    void InterruptedThrow() override { Note("InterruptedThrow"); }

    std::string text;

private:
    template <class... Parts>
    void Note(const char* operation, const Parts&... parts) {
        text += operation;
        ((text += ' ', text += atr_String(parts).View()), ...);
        text += '\n';
    }
    static std::string Joined(const cow_List<atr_String>& messages) {
        std::string all;
        for (const atr_String& message : messages) {
            all += all.empty() ? "" : " ";
            all += message.View();
        }
        return all;
    }
};
