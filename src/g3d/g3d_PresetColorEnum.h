#pragma once

/// The colours that g3d_Color knows without a name, in the order of its setters.
enum g3d_PresetColorEnum : int {
    g3d_BLACK,
    g3d_RED,
    g3d_GREEN,
    g3d_BLUE,
    g3d_CYAN,
    g3d_MAGENTA,
    g3d_YELLOW,
    g3d_WHITE,
    g3d_GREY10,  ///< of level 0.1, and so on
    g3d_GREY20,
    g3d_GREY30,
    g3d_GREY40,
    g3d_GREY50,
    g3d_GREY60,
    g3d_GREY70,
    g3d_GREY80,
    g3d_GREY90,
};
