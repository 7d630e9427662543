#pragma once

#include "host_Command.h"
#include "host_Interpreter.h"
#include "host_Progress.h"
#include "host_Renderer.h"

#include <functional>

/// What the commands draw and write pictures with, and what long ones call from time to time;
/// tests plug in their own.
struct host_PictureRoom {
    std::function<host_Renderer&()> renderer = &host_Renderer::Instance;
    std::function<void(const host_Image&, const std::string&)> write = &host_WritePng;
    std::function<void()> poll = &host_Poll;
    /// Runs what touches no Python object, while other Python threads run.
    std::function<void(const std::function<void()>&)> aside = [](const auto& work) {
        const host_WithoutInterpreter without;
        work();
    };
};

/// Adds the commands of the viewport: what it shows and how, the camera, pictures.
void host_RegisterViewCommands(host_CommandTable& table, const host_PictureRoom& room = {});
