// Cars seen from above, front at the top, and the states their deltas show.
#include <array>

#include "palettes.h"
#include "sprites.h"

namespace ombrevale::sample {
namespace {

enum class Body { Compact, Saloon, Sports, Estate, Van, Pickup, Truck, Bus, Limo, Bike };

struct Model {
    Body body;
    int width, height;
    int doors;
    bool roofLights;
    bool taxiSign;
};

Model ModelFor(int car) {
    static constexpr std::array<Body, 14> kCycle = {
        Body::Compact, Body::Saloon, Body::Sports, Body::Estate, Body::Van,    Body::Saloon, Body::Pickup,
        Body::Compact, Body::Truck,  Body::Sports, Body::Bus,    Body::Saloon, Body::Limo,   Body::Bike};
    const Body b = kCycle[static_cast<std::size_t>(car % 14)];
    const int grow = (car / 14) * 2;
    Model m{b, 24, 48, 2, false, false};
    switch (b) {
        case Body::Compact:
            m = {b, 22 + grow / 2, 40 + grow, 2, false, false};
            break;
        case Body::Saloon:
            m = {b, 24, 50 + grow, 4, false, false};
            break;
        case Body::Sports:
            m = {b, 24, 46 + grow, 2, false, false};
            break;
        case Body::Estate:
            m = {b, 25, 52 + grow, 4, false, false};
            break;
        case Body::Van:
            m = {b, 28, 58 + grow, 2, false, false};
            break;
        case Body::Pickup:
            m = {b, 27, 54 + grow, 2, false, false};
            break;
        case Body::Truck:
            m = {b, 30, 76 + grow, 2, false, false};
            break;
        case Body::Bus:
            m = {b, 32, 100 + grow, 1, false, false};
            break;
        case Body::Limo:
            m = {b, 26, 74 + grow, 4, false, false};
            break;
        case Body::Bike:
            m = {b, 12, 30, 0, false, false};
            break;
    }
    // Special cars: a taxi, police cars, an ambulance and a fire engine.
    if (car == 5) m.taxiSign = true;
    if (car == 11 || car == 25 || car == 39 || car == 18 || car == 22) m.roofLights = true;
    return m;
}

struct CarState {
    int dents = 0;  // bit per corner: front left, front right, rear left, rear right
    bool smashed = false;
    bool headlights = false;
    bool brakeLights = false;
    std::array<int, 4> doorStage{};  // 0 shut .. 4 wide open
    bool redLight = false;
    bool blueLight = false;
};

struct Layout {
    int frontAxle, rearAxle, screenTop, screenRows, rearWindowTop, rearWindowRows;
};

Layout LayoutFor(const Model& m) {
    const int h = m.height;
    if (m.body == Body::Bus) return {h * 12 / 100, h * 82 / 100, 2, 6, h - 8, 4};
    if (m.body == Body::Truck) return {h * 14 / 100, h * 80 / 100, h * 10 / 100, h * 8 / 100, h * 26 / 100, 2};
    return {h * 20 / 100, h * 78 / 100, h * 26 / 100, h * 13 / 100, h * 66 / 100, h * 8 / 100};
}

void DoorRange(const Model& m, const Layout& l, int door, int& y0, int& len) {
    const int front = l.screenTop + l.screenRows;
    len = m.body == Body::Bus ? 10 : m.height * 18 / 100;
    y0 = door < 2 ? front - 2 : front - 2 + len + 1;
    if (m.body == Body::Bus) y0 = 8;
}

void DrawCar(Canvas& c, const Model& m, const CarState& s, std::uint64_t seed) {
    const int w = m.width, h = m.height;
    const Layout l = LayoutFor(m);
    const std::uint8_t tyre = Shade(kTyre, 10);
    if (m.body == Body::Bike) {
        c.FillRect(w / 2 - 1, 0, 3, 8, tyre);
        c.FillRect(w / 2 - 1, h - 8, 3, 8, tyre);
        c.FillRect(w / 2 - 2, 6, 5, h - 12, Shade(kBody, 17));
        c.FillRect(0, 8, w, 2, Shade(kChrome, 20));  // handlebars
        c.FillEllipse(w / 2, h / 2, 3, 4, Shade(kInterior, 14));
        c.Set(w / 2, 1, Shade(kHeadlight, s.headlights ? 30 : 20));
        c.Set(w / 2, h - 2, Shade(kTailLight, s.brakeLights ? 26 : 14));
    } else {
        for (int axle : {l.frontAxle, l.rearAxle}) {
            c.FillRect(0, axle - 4, 3, 9, tyre);
            c.FillRect(w - 3, axle - 4, 3, 9, tyre);
        }
        c.FillRounded(1, 0, w - 2, h, 3, Shade(kBody, 17));
        c.ShiftShade(1, 0, 2, h, -4);
        c.ShiftShade(w - 3, 0, 2, h, -4);
        c.ShiftShade(w / 2 - 2, 0, 4, h, 3);
        // Windscreen, narrower towards the bonnet.
        for (int r = 0; r < l.screenRows; ++r) {
            const int inset = 4 + (l.screenRows - r) / 3;
            c.FillRect(inset, l.screenTop + r, w - 2 * inset, 1, Shade(kGlass, 14 + r % 2));
        }
        c.Line(6, l.screenTop + 1, 9, l.screenTop + l.screenRows - 2, Shade(kGlass, 24));
        const int roofTop = l.screenTop + l.screenRows;
        if (m.body == Body::Truck || m.body == Body::Pickup) {
            const int bedTop = m.body == Body::Truck ? l.rearWindowTop + 3 : h * 55 / 100;
            c.FillRect(2, bedTop, w - 4, h - bedTop - 1,
                       m.body == Body::Truck ? Shade(kChrome, 16) : Shade(kInterior, 10));
            c.Frame(2, bedTop, w - 4, h - bedTop - 1, Shade(kBody, 11));
            if (m.body == Body::Truck)
                for (int y = bedTop + 6; y < h - 2; y += 6) c.Line(3, y, w - 4, y, Shade(kChrome, 12));
        } else {
            c.FillRect(4, roofTop, w - 8, l.rearWindowTop - roofTop, Shade(kBody, 20));
            c.FillRect(5, l.rearWindowTop, w - 10, l.rearWindowRows, Shade(kGlass, 12));
        }
        if (m.body == Body::Bus)
            for (int y = 14; y < h - 10; y += 8) {
                c.FillRect(1, y, 2, 6, Shade(kGlass, 13));
                c.FillRect(w - 3, y, 2, 6, Shade(kGlass, 13));
                c.FillRect(w / 2 - 3, y + 1, 6, 4, Shade(kChrome, 18));  // roof vents
            }
        const int lamp = s.headlights ? 30 : 20;
        c.FillRect(3, 1, 3, 2, Shade(kHeadlight, lamp));
        c.FillRect(w - 6, 1, 3, 2, Shade(kHeadlight, lamp));
        if (s.headlights) {
            c.FillRect(4, 0, 2, 1, Shade(kHeadlight, 31));
            c.FillRect(w - 6, 0, 2, 1, Shade(kHeadlight, 31));
        }
        const int tail = s.brakeLights ? 27 : 14;
        c.FillRect(3, h - 3, 3, 2, Shade(kTailLight, tail));
        c.FillRect(w - 6, h - 3, 3, 2, Shade(kTailLight, tail));
        for (int d = 0; d < m.doors; ++d) {
            int y0 = 0, len = 0;
            DoorRange(m, l, d, y0, len);
            const bool left = d % 2 == 0 && m.body != Body::Bus;
            const int stage = s.doorStage[static_cast<std::size_t>(d)];
            const int edge = left ? 1 : w - 2;
            const int in = left ? 1 : -1;
            c.Line(edge, y0, edge + in * 2, y0, Shade(kBody, 9));
            c.Line(edge, y0 + len, edge + in * 2, y0 + len, Shade(kBody, 9));
            if (stage > 0) {
                // The door swings out on its front hinge: the seat shows behind it.
                for (int k = 0; k <= stage; ++k)
                    c.Line(edge + in * k, y0 + 1, edge + in * k, y0 + len - 1, Shade(kInterior, 12));
                const int reach = len * (5 - stage) / 5;
                c.Line(edge, y0, edge, y0 + reach, Shade(kBody, 22));
                c.Line(edge + in * stage, y0 + 1, edge + in * stage, y0 + 2, Shade(kBody, 22));
            }
        }
        if (m.taxiSign) c.FillRect(w / 2 - 3, roofTop + 4, 6, 3, Shade(kHeadlight, 22));
        if (m.roofLights) {
            const int y = roofTop + 3;
            c.FillRect(5, y, w / 2 - 5, 3, Shade(kTailLight, s.redLight ? 30 : 12));
            c.FillRect(w / 2, y, w / 2 - 5, 3, Shade(kGlass, s.blueLight ? 30 : 12));
        }
    }
    Rng rng(seed);
    for (int corner = 0; corner < 4; ++corner) {
        if (!(s.dents & (1 << corner))) continue;
        const int x0 = corner % 2 == 0 ? 1 : w / 2, y0 = corner < 2 ? 0 : h - h / 5;
        for (int y = y0; y < y0 + h / 5; ++y)
            for (int x = x0; x < x0 + w / 2 - 1; ++x) {
                const int c0 = c.At(x, y);
                if (c0 != 0 && rng.Chance(45)) c.Set(x, y, Shade(c0 / kShades, c0 % kShades - rng.Range(3, 8)));
            }
        c.Line(x0 + 1, y0 + 2, x0 + w / 2 - 3, y0 + h / 5 - 2, Shade(kChrome, 24));
    }
    if (s.smashed) {
        const int cx = w / 2 + 2, cy = l.screenTop + l.screenRows / 2;
        for (int k = 0; k < 6; ++k) {
            const int ex = cx + rng.Range(-w / 2, w / 2), ey = cy + rng.Range(-l.screenRows, l.screenRows);
            Canvas mask = c;
            mask.Line(cx, cy, ex, ey, Shade(kChrome, 29));
            for (int y = l.screenTop; y < l.screenTop + l.screenRows; ++y)
                for (int x = 0; x < w; ++x)
                    if (c.At(x, y) / kShades == kGlass && mask.At(x, y) != c.At(x, y)) c.Set(x, y, mask.At(x, y));
        }
    }
}

modDeclares::CarRecord RecordFor(int car, const Model& m) {
    const Layout l = LayoutFor(m);
    modDeclares::CarRecord r;
    r.model = static_cast<std::uint8_t>(car);
    r.sprite = 1;
    r.width = static_cast<std::uint8_t>(m.width);
    r.height = static_cast<std::uint8_t>(m.height);
    const bool fixedColour = m.taxiSign || m.roofLights;
    if (!fixedColour) {
        const int n = 4 + car % 6;
        for (int i = 0; i < n; ++i) r.remaps.push_back(static_cast<std::uint8_t>((car * 5 + i * 3) % kCarRemaps));
    }
    r.numRemaps = static_cast<std::uint8_t>(r.remaps.size());
    r.passengers = static_cast<std::uint8_t>(m.body == Body::Bike  ? 1
                                             : m.body == Body::Bus ? 12
                                             : m.doors == 4        ? 4
                                                                   : 2);
    r.wreck = static_cast<std::uint8_t>(m.body == Body::Bike ? 0 : (m.height - 40) / 9 % 8);
    r.rating = static_cast<std::uint8_t>(1 + (car * 7) % 15);
    r.frontWheelOffset = static_cast<std::uint8_t>(m.height / 2 - l.frontAxle);
    r.rearWheelOffset = static_cast<std::uint8_t>(l.rearAxle - m.height / 2);
    r.frontWindowOffset = static_cast<std::uint8_t>(m.height / 2 - l.screenTop);
    r.rearWindowOffset = static_cast<std::uint8_t>(l.rearWindowTop - m.height / 2);
    r.infoFlags = static_cast<std::uint8_t>((m.roofLights ? 0x01 : 0) | (m.taxiSign ? 0x02 : 0) |
                                            (m.body == Body::Bike ? 0x04 : 0));
    r.infoFlags2 = 0;
    r.numDoors = static_cast<std::uint8_t>(m.doors);
    for (int d = 0; d < m.doors; ++d) {
        int y0 = 0, len = 0;
        DoorRange(m, l, d, y0, len);
        const int dx = d % 2 == 0 && m.body != Body::Bus ? -m.width / 2 : m.width / 2;
        const int dy = y0 + len / 2 - m.height / 2;
        // x then y, signed bytes, from the middle of the car.
        r.doors.push_back(
            static_cast<std::uint16_t>((static_cast<std::uint8_t>(dx)) | (static_cast<std::uint8_t>(dy) << 8)));
    }
    return r;
}

}  // namespace

CarSet BuildCars() {
    CarSet set;
    for (int car = 0; car < kCarModels; ++car) {
        const Model m = ModelFor(car);
        const auto seed = static_cast<std::uint64_t>(1000 + car);
        SpriteArt art{Canvas(m.width, m.height), kCarPal + car};
        DrawCar(art.pixels, m, {}, seed);
        std::vector<Canvas> deltas;
        auto add = [&](const CarState& s) {
            Canvas c(m.width, m.height);
            DrawCar(c, m, s, seed);
            deltas.push_back(std::move(c));
        };
        if (m.body != Body::Bike) {
            for (int corner = 0; corner < 4; ++corner) add(CarState{.dents = 1 << corner});
            add(CarState{.smashed = true});
        }
        add(CarState{.headlights = true});
        add(CarState{.brakeLights = true});
        for (int d = 0; d < m.doors; ++d)
            for (int stage = 1; stage <= 4; ++stage) {
                CarState s;
                s.doorStage[static_cast<std::size_t>(d)] = stage;
                add(s);
            }
        if (m.roofLights) {
            add(CarState{.redLight = true});
            add(CarState{.blueLight = true});
        }
        set.sprites.push_back(std::move(art));
        set.deltaImages.push_back(std::move(deltas));
        set.records.push_back(RecordFor(car, m));
    }
    // Wrecks: burnt shells in eight sizes, no glass left.
    for (int wreck = 0; wreck < kCarSprites - kCarModels; ++wreck) {
        Model m{Body::Saloon, 24 + wreck / 3 * 2, 40 + wreck * 9, 0, false, false};
        SpriteArt art{Canvas(m.width, m.height), kCarPal + kCarModels + wreck};
        Rng rng(static_cast<std::uint64_t>(77 + wreck));
        DrawCar(art.pixels, m, CarState{.dents = 15, .smashed = true}, static_cast<std::uint64_t>(500 + wreck));
        for (int y = 0; y < m.height; ++y)
            for (int x = 0; x < m.width; ++x) {
                const int c0 = art.pixels.At(x, y);
                if (c0 == 0) continue;
                if (c0 / kShades == kGlass)
                    art.pixels.Set(x, y, Shade(kTyre, 3));
                else if (rng.Chance(30))
                    art.pixels.Set(x, y, Shade(kCarGrey, rng.Range(3, 9)));
            }
        set.sprites.push_back(std::move(art));
        set.deltaImages.emplace_back();
    }
    return set;
}

}  // namespace ombrevale::sample
