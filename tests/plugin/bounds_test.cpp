#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "Crop.h"
#include "FakeHost.h"

namespace {

PF_Pixel8 pixels[200][320];
A_Boolean paddingOn;
A_long paddingAmount;

class Bounds : public testing::Test {
 protected:
    Bounds() {
        std::memset(pixels, 0, sizeof pixels);
        paddingOn = 0;
        paddingAmount = 0;
        worlds_.AEGP_GetSize = [](AEGP_WorldH, A_long* width, A_long* height) {
            *width = 300;
            *height = 200;
            return FakeHost::call("size");
        };
        worlds_.AEGP_GetRowBytes = [](AEGP_WorldH, A_u_long* rowBytes) {
            *rowBytes = sizeof pixels[0];
            return FakeHost::call("row bytes");
        };
        worlds_.AEGP_GetType = [](AEGP_WorldH, AEGP_WorldType* type) {
            *type = AEGP_WorldType_8;
            return FakeHost::call("type");
        };
        worlds_.AEGP_GetBaseAddr8 = [](AEGP_WorldH, PF_Pixel8** base) {
            *base = pixels[0];
            return FakeHost::call("base");
        };
        store_.AEGP_GetApplicationBlob = [](AEGP_PersistentBlobH*) { return FakeHost::call("blob"); };
        store_.AEGP_GetData = [](AEGP_PersistentBlobH, const A_char* section, const A_char* key, A_u_long size,
                                 const void* byDefault, void* value) {
            EXPECT_EQ(size, 1U);
            EXPECT_EQ(byDefault, nullptr);
            *static_cast<A_Boolean*>(value) = paddingOn;
            return FakeHost::call(std::string(section) + "/" + key);
        };
        store_.AEGP_GetLong = [](AEGP_PersistentBlobH, const A_char*, const A_char* key, A_long,
                                 A_long* value) {
            *value = paddingAmount;
            return FakeHost::call(key);
        };
        host_.offer("AEGP World Suite", 3, &worlds_);
        host_.offer("AEGP Persistent Data Suite", 3, &store_);
    }

    crop::CroppingBounds find(short xFactor, short yFactor, A_FloatRect region = {-1, -1, -1, -1}) {
        AEGP_WorldH world = nullptr;
        crop::CroppingBounds bounds{};
        error_ = crop::findCropBounds(host_.basic(), &world, xFactor, yFactor, &bounds, region);
        return bounds;
    }
    static void show(int top, int bottom, int left, int right) {
        pixels[top][left].alpha = 1;
        pixels[bottom][right].alpha = 1;
    }

    FakeHost host_;
    AEGP_WorldSuite3 worlds_{};
    AEGP_PersistentDataSuite3 store_{};
    A_Err error_ = A_Err_NONE;
};

void expectEdges(const crop::CroppingBounds& bounds, double top, double bottom, double left, double right) {
    EXPECT_EQ(bounds.top, top);
    EXPECT_EQ(bounds.bottom, bottom);
    EXPECT_EQ(bounds.left, left);
    EXPECT_EQ(bounds.right, right);
}

TEST_F(Bounds, ScalesThenPads) {
    show(5, 7, 10, 20);
    expectEdges(find(2, 3), 15, 21, 20, 40);
    EXPECT_EQ(host_.calls(),
              (std::vector<std::string>{"size", "row bytes", "type", "base", "blob", "Kestrin/Padding"}));
    paddingOn = 1;
    paddingAmount = 12;
    const crop::CroppingBounds padded = find(2, 2);
    expectEdges(padded, -2, 26, 8, 52);
    EXPECT_EQ(padded.width, 600);
    EXPECT_EQ(padded.height, 400);
    paddingAmount = -6;  // narrower than nothing
    EXPECT_TRUE(crop::isEmpty(find(1, 1)));
    paddingAmount = std::numeric_limits<A_long>::max();  // stays what it is, for the host to refuse
    EXPECT_EQ(find(1, 1).right, 2147483667.0);
}

TEST_F(Bounds, ATransparentFrameIsEmptyUntilPaddingCoversIt) {
    expectEdges(find(1, 1), 200, 0, 300, 0);
    paddingOn = 1;
    paddingAmount = 149;
    EXPECT_TRUE(crop::isEmpty(find(1, 1)));
    paddingAmount = 150;
    EXPECT_FALSE(crop::isEmpty(find(1, 1)));
}

TEST_F(Bounds, RegionIsComparedWithUnscaledPixelsAndRoundsDown) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    show(0, 190, 0, 150);
    expectEdges(find(2, 2, {10.9, 20.9, 100, 120.9}), 40, 240, 20, 200);
    expectEdges(find(1, 1, {10, 20, -1, 120}), 0, 190, 0, 150);  // right -1: no region at all
    expectEdges(find(1, 1, {nan, 1e300, nan, -1e300}), 2147483647, -2147483648.0, 0, 150);
}

}  // namespace
