#include "Views/Background/GradientMesh.h"

#include <algorithm>
#include <cmath>

namespace tamsy {
namespace {

constexpr float levels = 255; // of a colour component on the screen
// Limits of the estimated error, in levels. They keep the actual error within 2.
constexpr float splitBend = 2.7F;  // a cell with more is split
constexpr float middleBend = 1.6F; // a cell with more gets a vertex in its middle
constexpr float rowBend = 0.6F;    // between two rows along a side

constexpr int coarsest = 16;            // size of the largest cells, in smallest cells
constexpr float finestPart = 1.0F / 48; // size of the smallest cells, relative to the smallest blob
constexpr float finestStep = 2;         // min size of the smallest cells in points, below any blur
constexpr float widestRow = 1.0F / 20;  // max height of a row, relative to the smallest blob
constexpr float sideWidth = 20;         // points; all blobs fade out over less
constexpr float tipless = 0.07F;        // part of the area along each side that contains no tip

/// The max change of a colour component by a fully opaque blob, in levels.
float amplitude(const GradientScene& scene, const PlacedBlob& blob) {
    constexpr float shaded = 0.8F; // the shade leaves at least this part of the gradient's light
    float result = 0;
    for (std::size_t component = 0; component < 3; ++component) {
        const float base = std::min(scene.firstColor[component], scene.secondColor[component]);
        result = std::max(result, blob.color[component] * (1 - shaded * base));
    }
    return levels * result;
}

struct Range {
    float low;
    float high;
};

/// The min and max squared distance from `center` to the points of a line.
Range squaredDistances(float center, Range line) {
    const float low = std::max({line.low - center, center - line.high, 0.0F});
    const float high = std::max(std::abs(line.low - center), std::abs(line.high - center));
    return {low * low, high * high};
}

/// How far a colour is from linear within a cell.
struct Bend {
    float levels = 0;     ///< estimate of the max
    bool isAlong = false; ///< in the direction of the cone's centre, else across

    friend auto operator<=>(const Bend& a, const Bend& b) { return a.levels <=> b.levels; }
};

/// The bend of a cone one level high, in a cell of side `size` at these squared distances from its
/// centre. A parabola of curvature c bends by c * size² / 8. A cone has kinks at its tip and foot,
/// which the blur turns into parabolas.
Bend bend(float size, Range squared, float radius, float deviation) {
    const float outer = radius + 1.5F * deviation;
    if (squared.low > outer * outer)
        return {};
    const float parabola = size * size / 8;
    const Bend tip{
        std::min(parabola / std::sqrt(squared.low + 1.5F * deviation * deviation), size / 2) /
            radius,
        false};
    const float inner = std::max(radius - 1.2F * deviation, 0.0F);
    if (squared.high < inner * inner)
        return tip;
    const Bend foot{
        std::min(parabola / (1.6F * deviation), std::max(0.42F * size - 0.4F * deviation, 0.0F)) /
            radius,
        true};
    return std::max(tip, foot);
}

/// The distances of rows from a side, up to `end`, closer together where more blobs fade out.
/// `toSide` returns the distance of a blob's centre.
template <typename ToSide>
std::vector<float> rows(const GradientScene& scene, float end, float widest, ToSide toSide) {
    std::vector<float> result;
    for (float next = 0; next < end;) {
        result.push_back(next);
        float curvature = 0.01F; // of all fades, in levels; not 0, since it is a divisor
        for (const PlacedBlob& blob : scene.blobs) {
            const float fade = GradientScene::fadeDeviations * blob.deviation;
            if (next < fade)
                curvature += amplitude(scene, blob) * blob.opacityAt(toSide(blob)) / (fade * fade);
        }
        next += std::min(std::sqrt(8 * rowBend / curvature), widest);
    }
    return result;
}

std::vector<float> joined(std::initializer_list<std::vector<float>> parts) {
    std::vector<float> result;
    for (const std::vector<float>& part : parts)
        result.insert(result.end(), part.begin(), part.end());
    return result;
}

} // namespace

void GradientMesh::build(const GradientScene& scene) {
    vertices_.clear();
    indices_.clear();
    if (scene.width <= 0 || scene.height <= 0)
        return;
    placeAxes(scene);
    split(scene);
    corners_.assign(
        static_cast<std::size_t>(2 * x_.count + 1) * static_cast<std::size_t>(2 * y_.count + 1), 0);
    for (const Cell& cell : cells_)
        triangulate(cell);
    addSides();
    scene.color(vertices_);
}

void GradientMesh::placeAxes(const GradientScene& scene) {
    const float smallest = std::ranges::min(scene.blobs, {}, [](const PlacedBlob& blob) {
                               return blob.radius;
                           }).radius;
    const float finest = std::max(finestPart * smallest, finestStep);
    const auto place = [&](Axis& axis, float length, float PlacedBlob::*center) {
        axis.start = std::min(sideWidth, tipless * std::min(scene.width, scene.height));
        const float inner = length - 2 * axis.start;
        axis.count = coarsest * static_cast<int>(std::ceil(inner / (coarsest * finest)));
        axis.step = inner / static_cast<float>(axis.count);
        axis.nearRows = rows(scene, axis.start, widestRow * smallest,
                             [&](const PlacedBlob& blob) { return blob.*center; });
        axis.farRows = rows(scene, axis.start, widestRow * smallest,
                            [&](const PlacedBlob& blob) { return length - blob.*center; });
        std::ranges::reverse(axis.farRows);
        for (float& row : axis.farRows)
            row = length - row;
    };
    place(x_, scene.width, &PlacedBlob::x);
    place(y_, scene.height, &PlacedBlob::y);
}

std::uint8_t& GradientMesh::sizeAt(int x, int y) {
    return sizes_[static_cast<std::size_t>(y) * static_cast<std::size_t>(x_.count) +
                  static_cast<std::size_t>(x)];
}

void GradientMesh::split(const GradientScene& scene) {
    cells_.clear();
    sizes_.resize(static_cast<std::size_t>(x_.count) * static_cast<std::size_t>(y_.count));
    for (int y = 0; y < y_.count; y += coarsest) {
        for (int x = 0; x < x_.count; x += coarsest)
            unsplit_.push_back({x, y, coarsest});
    }
    while (!unsplit_.empty()) {
        Cell cell = unsplit_.back();
        unsplit_.pop_back();
        const float bent = measure(scene, cell);
        const int half = cell.size / 2;
        if (half > 0 && bent > splitBend) {
            for (const int dy : {0, half}) {
                for (const int dx : {0, half})
                    unsplit_.push_back({cell.x + dx, cell.y + dy, half});
            }
            continue;
        }
        cell.hasMiddle = bent > middleBend;
        cells_.push_back(cell);
        for (int y = cell.y; y < cell.y + cell.size; ++y)
            std::fill_n(&sizeAt(cell.x, y), cell.size, static_cast<std::uint8_t>(cell.size));
    }
}

/// The scene's bend within a cell, in levels. Also chooses the diagonal along which the blob that
/// bends most is closest to linear.
float GradientMesh::measure(const GradientScene& scene, Cell& cell) const {
    const auto line = [&cell](const Axis& axis, int from) {
        return Range{axis.at(static_cast<float>(from)),
                     axis.at(static_cast<float>(from + cell.size))};
    };
    const Range x = line(x_, cell.x);
    const Range y = line(y_, cell.y);
    const float size = std::max(x.high - x.low, y.high - y.low);
    const auto bendBy = [&](float centerX, float centerY, float radius, float deviation) {
        const Range dx = squaredDistances(centerX, x);
        const Range dy = squaredDistances(centerY, y);
        return bend(size, {dx.low + dy.low, dx.high + dy.high}, radius, deviation);
    };
    float sum = levels * GradientScene::centerShade *
                bendBy(scene.width / 2, scene.height / 2, GradientScene::shadeRadius, 1).levels;
    const float toSide = std::min({x.low, y.low, scene.width - x.high, scene.height - y.high});
    float most = 0;
    for (const PlacedBlob& blob : scene.blobs) {
        if (blob.opacity <= 0)
            continue;
        const Bend bent = bendBy(blob.x, blob.y, blob.radius, blob.deviation);
        const float fade = GradientScene::fadeDeviations * blob.deviation;
        const float fading = bent.levels > 0 && toSide < fade ? size * size / (8 * fade * fade) : 0;
        const float by = amplitude(scene, blob) * blob.opacity * (bent.levels + fading);
        sum += by;
        if (by <= most)
            continue;
        most = by;
        const bool isDownwards = (x.low + x.high - 2 * blob.x) * (y.low + y.high - 2 * blob.y) > 0;
        cell.isSplitDownwards = isDownwards != bent.isAlong;
    }
    return sum;
}

GradientMesh::Index GradientMesh::corner(int doubledX, int doubledY) {
    Index& number =
        corners_[static_cast<std::size_t>(doubledY) * static_cast<std::size_t>(2 * x_.count + 1) +
                 static_cast<std::size_t>(doubledX)];
    if (number == 0) {
        vertices_.push_back({x_.at(0.5F * static_cast<float>(doubledX)),
                             y_.at(0.5F * static_cast<float>(doubledY)),
                             {}});
        number = static_cast<Index>(vertices_.size());
    }
    return number - 1;
}

/// Collects the vertices around a cell: its corners and those of smaller neighbours.
void GradientMesh::outline(const Cell& cell) {
    const int right = cell.x + cell.size;
    const int bottom = cell.y + cell.size;
    const struct {
        int x, y;             // where the side starts
        int dx, dy;           // its direction
        int besideX, besideY; // offset from a position on it to the smallest cell outside
    } sides[] = {{cell.x, cell.y, 1, 0, 0, -1},
                 {right, cell.y, 0, 1, 0, 0},
                 {right, bottom, -1, 0, -1, 0},
                 {cell.x, bottom, 0, -1, -1, -1}};
    outline_.clear();
    for (const auto& side : sides) {
        for (int passed = 0; passed < cell.size;) {
            const int x = side.x + side.dx * passed;
            const int y = side.y + side.dy * passed;
            outline_.push_back(corner(2 * x, 2 * y));
            const int besideX = x + side.besideX;
            const int besideY = y + side.besideY;
            const bool hasNeighbour =
                besideX >= 0 && besideX < x_.count && besideY >= 0 && besideY < y_.count;
            passed += hasNeighbour ? std::min<int>(sizeAt(besideX, besideY), cell.size) : cell.size;
        }
    }
}

void GradientMesh::triangulate(const Cell& cell) {
    outline(cell);
    if (outline_.size() == 4 && !cell.hasMiddle) {
        const std::size_t first = cell.isSplitDownwards ? 0 : 1;
        addTriangle(outline_[first], outline_[first + 1], outline_[first + 2]);
        addTriangle(outline_[first], outline_[first + 2], outline_[3 * (1 - first)]);
        return;
    }
    const Index middle = corner(2 * cell.x + cell.size, 2 * cell.y + cell.size);
    for (std::size_t i = 0; i < outline_.size(); ++i)
        addTriangle(middle, outline_[i], outline_[(i + 1) % outline_.size()]);
}

/// Fills the frame between the cells and the area's sides, from the vertices that the cells have
/// there.
void GradientMesh::addSides() {
    const auto cornersX = [this](int y) {
        std::vector<float> result;
        for (int x = 0; x < x_.count; x += sizeAt(x, y))
            result.push_back(x_.at(static_cast<float>(x)));
        result.push_back(x_.end());
        return result;
    };
    const auto cornersY = [this](int x) {
        std::vector<float> result;
        for (int y = 0; y < y_.count; y += sizeAt(x, y))
            result.push_back(y_.at(static_cast<float>(y)));
        result.push_back(y_.end());
        return result;
    };
    addStrip(joined({x_.nearRows, cornersX(0), x_.farRows}), joined({y_.nearRows, {y_.start}}));
    addStrip(joined({x_.nearRows, {x_.start}}), cornersY(0));
    addStrip(joined({{x_.end()}, x_.farRows}), cornersY(x_.count - 1));
    addStrip(joined({x_.nearRows, cornersX(y_.count - 1), x_.farRows}),
             joined({{y_.end()}, y_.farRows}));
}

/// Adds a grid with these coordinates, which are ascending.
void GradientMesh::addStrip(std::span<const float> xs, std::span<const float> ys) {
    const auto first = static_cast<Index>(vertices_.size());
    for (const float y : ys) {
        for (const float x : xs)
            vertices_.push_back({x, y, {}});
    }
    const auto width = static_cast<Index>(xs.size());
    for (Index row = 0; row + 1 < ys.size(); ++row) {
        for (Index column = 0; column + 1 < width; ++column) {
            const Index corner = first + row * width + column;
            addTriangle(corner, corner + 1, corner + width + 1);
            addTriangle(corner, corner + width + 1, corner + width);
        }
    }
}

} // namespace tamsy
