// The one list of suites: accessor label, the name the host publishes, and the number that the suite
// is acquired and released by. The number is the host's own and mostly differs from the label's digit.
//
// To add a suite: declare its table AEGP_<label> in AEGP_Host.h, assert its layout in
// AEGP_HostLayout.cpp, and add a line here; the handler's accessor and the headless host follow.

#pragma once

#include "AEGP_Host.h"

// clang-format off
#define AEGP_FOR_EACH_SUITE(X) \
    X(CommandSuite1, "AEGP Command Suite", 1) \
    X(RegisterSuite5, "AEGP Register Suite", 6) \
    X(UtilitySuite5, "AEGP Utility Suite", 11) \
    X(PersistentDataSuite3, "AEGP Persistent Data Suite", 3) \
    X(MemorySuite1, "AEGP Memory Suite", 1) \
    X(ProjSuite5, "AEGP Proj Suite", 8) \
    X(ProjSuite6, "AEGP Proj Suite", 9) \
    X(ItemSuite1, "AEGP Item Suite", 3) \
    X(ItemSuite6, "AEGP Item Suite", 10) \
    X(ItemSuite8, "AEGP Item Suite", 13) \
    X(CompSuite4, "AEGP Comp Suite", 9) \
    X(CompSuite7, "AEGP Comp Suite", 15) \
    X(CompSuite9, "AEGP Comp Suite", 19) \
    X(LayerSuite5, "AEGP Layer Suite", 11) \
    X(LayerSuite7, "AEGP Layer Suite", 13) \
    X(CollectionSuite2, "AEGP Collection Suite", 2) \
    X(MaskSuite5, "AEGP Layer Mask Suite", 6) \
    X(MaskOutlineSuite2, "AEGP Mask Outline Suite", 3) \
    X(StreamSuite4, "AEGP Stream Suite", 9) \
    X(KeyframeSuite4, "AEGP Keyframe Suite", 4) \
    X(RenderOptionsSuite3, "AEGP Render Options Suite", 3) \
    X(RenderSuite3, "AEGP Render Suite", 3) \
    X(WorldSuite3, "AEGP World Suite", 3)
// clang-format on

inline constexpr const char* kKestrinPlatformSuiteName = "Kestrin Platform Suite";
inline constexpr std::int32_t kKestrinPlatformSuiteNumber = 1;
