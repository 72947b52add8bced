// SPDX-License-Identifier: MIT
#include "kyvconvert/picture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace kyvconvert
{

namespace
{

using gltf::Vector3;

constexpr int samples = 3; ///< along each edge of a pixel
constexpr double pi = 3.14159265358979323846;
constexpr double azimuth = 35.0 * pi / 180.0;
constexpr double elevation = 28.0 * pi / 180.0;
constexpr double border = 0.08; ///< share of the picture that stays free at each side

constexpr Vector3 groundTop = {0.275F, 0.275F, 0.295F};
constexpr Vector3 groundBottom = {0.165F, 0.165F, 0.180F};

double Dot(const Vector3& a, const Vector3& b)
{
    return static_cast<double>(a[0]) * b[0] + static_cast<double>(a[1]) * b[1] +
           static_cast<double>(a[2]) * b[2];
}

/// Parallel projection: what stands upright stays upright and parallel, as in an architect's drawing.
struct View {
    Vector3 right{static_cast<float>(std::cos(azimuth)), 0.0F, static_cast<float>(-std::sin(azimuth))};
    Vector3 up{static_cast<float>(-std::sin(elevation) * std::sin(azimuth)),
               static_cast<float>(std::cos(elevation)),
               static_cast<float>(-std::sin(elevation) * std::cos(azimuth))};
    Vector3 towards{static_cast<float>(std::cos(elevation) * std::sin(azimuth)),
                    static_cast<float>(std::sin(elevation)),
                    static_cast<float>(std::cos(elevation) * std::cos(azimuth))};
};

struct Corner {
    double x;
    double y;
    double depth;
};

class Canvas
{
public:
    Canvas(int width, int height)
        : m_width(width)
        , m_height(height)
        , m_depth(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                  -std::numeric_limits<float>::infinity())
    {
        m_colors.resize(m_depth.size());
        for (int y = 0; y < height; ++y) {
            const auto share = static_cast<float>(y) / static_cast<float>(height);
            Vector3 color{};
            for (std::size_t i = 0; i < 3; ++i)
                color[i] = groundTop[i] + (groundBottom[i] - groundTop[i]) * share;
            std::fill_n(m_colors.begin() + static_cast<std::ptrdiff_t>(y) * width, width, color);
        }
    }

    void fill(const Corner& a, const Corner& b, const Corner& c, const Vector3& color, float opacity)
    {
        const double area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
        if (!std::isfinite(area) || area == 0.0)
            return;
        const int left = std::max(0, static_cast<int>(std::floor(std::min({a.x, b.x, c.x}))));
        const int right = std::min(m_width - 1, static_cast<int>(std::ceil(std::max({a.x, b.x, c.x}))));
        const int top = std::max(0, static_cast<int>(std::floor(std::min({a.y, b.y, c.y}))));
        const int bottom = std::min(m_height - 1, static_cast<int>(std::ceil(std::max({a.y, b.y, c.y}))));
        for (int y = top; y <= bottom; ++y) {
            for (int x = left; x <= right; ++x) {
                const double px = x + 0.5;
                const double py = y + 0.5;
                const double u = ((b.x - px) * (c.y - py) - (c.x - px) * (b.y - py)) / area;
                const double v = ((c.x - px) * (a.y - py) - (a.x - px) * (c.y - py)) / area;
                const double w = 1.0 - u - v;
                if (u >= 0.0 && v >= 0.0 && w >= 0.0)
                    set(x, y, static_cast<float>(u * a.depth + v * b.depth + w * c.depth), color, opacity);
            }
        }
    }

    /// As wide as a pixel of the picture.
    void line(const Corner& a, const Corner& b, const Vector3& color, float opacity)
    {
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        if (!std::isfinite(length) || length == 0.0)
            return;
        const double x = (b.y - a.y) / length * samples / 2.0;
        const double y = (a.x - b.x) / length * samples / 2.0;
        const Corner left{a.x - x, a.y - y, a.depth};
        const Corner right{b.x + x, b.y + y, b.depth};
        fill(left, {a.x + x, a.y + y, a.depth}, right, color, opacity);
        fill(left, right, {b.x - x, b.y - y, b.depth}, color, opacity);
    }

    [[nodiscard]] QImage image() const
    {
        QImage image(m_width / samples, m_height / samples, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, average(x * samples, y * samples));
        }
        return image;
    }

private:
    void set(int x, int y, float depth, const Vector3& color, float opacity)
    {
        const auto place =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
        if (depth < m_depth[place])
            return;
        auto& pixel = m_colors[place];
        for (std::size_t i = 0; i < 3; ++i)
            pixel[i] += (color[i] - pixel[i]) * opacity;
        if (opacity >= 1.0F)
            m_depth[place] = depth;
    }

    [[nodiscard]] QRgb average(int left, int top) const
    {
        Vector3 sum{};
        for (int y = top; y < top + samples; ++y) {
            for (int x = left; x < left + samples; ++x) {
                const auto& color = m_colors[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                                             static_cast<std::size_t>(x)];
                for (std::size_t i = 0; i < 3; ++i)
                    sum[i] += color[i];
            }
        }
        const auto byte = [](float value) {
            return static_cast<int>(
                std::lround(std::clamp(value / (samples * samples), 0.0F, 1.0F) * 255.0F));
        };
        return qRgb(byte(sum[0]), byte(sum[1]), byte(sum[2]));
    }

    int m_width;
    int m_height;
    std::vector<float> m_depth;
    std::vector<Vector3> m_colors;
};

/// The linear colour under some light, as the screen wants it.
Vector3 OnScreen(const gltf::Part& part, double light)
{
    Vector3 color{};
    for (std::size_t i = 0; i < 3; ++i)
        color[i] = static_cast<float>(std::pow(std::min(1.0, part.color[i] * light), 1.0 / 2.2));
    return color;
}

/// Two lights and the sky.
Vector3 Lit(const gltf::Part& part, const Vector3& normal)
{
    constexpr Vector3 sun = {0.42F, 0.78F, 0.46F};
    constexpr Vector3 fill = {-0.70F, 0.25F, 0.35F};
    const double light = 0.42 + 0.50 * std::max(0.0, Dot(normal, sun)) +
                         0.16 * std::max(0.0, Dot(normal, fill)) +
                         0.10 * std::max(0.0, static_cast<double>(normal[1]));
    return OnScreen(part, light);
}

/// Fits what the view sees of the models into a canvas.
class Projection
{
public:
    Projection(const View& view, std::span<const gltf::Model* const> models, int width, int height)
        : m_view(view)
    {
        double low[2] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
        double high[2] = {std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest()};
        for (const auto* model : models) {
            for (const auto& vertex : model->vertices) {
                const double at[2] = {Dot(vertex.position, view.right), Dot(vertex.position, view.up)};
                for (int axis = 0; axis < 2; ++axis) {
                    low[axis] = std::min(low[axis], at[axis]);
                    high[axis] = std::max(high[axis], at[axis]);
                }
            }
        }
        const double room = 1.0 - 2.0 * border;
        m_scale = std::min(width * room / std::max(1e-6, high[0] - low[0]),
                           height * room / std::max(1e-6, high[1] - low[1]));
        m_x = width / 2.0 - m_scale * (low[0] + high[0]) / 2.0;
        m_y = height / 2.0 + m_scale * (low[1] + high[1]) / 2.0;
    }

    [[nodiscard]] Corner operator()(const Vector3& point) const
    {
        return {m_x + m_scale * Dot(point, m_view.right), m_y - m_scale * Dot(point, m_view.up),
                Dot(point, m_view.towards)};
    }

private:
    View m_view;
    double m_scale = 1.0;
    double m_x = 0.0;
    double m_y = 0.0;
};

void DrawLines(Canvas& canvas, const Projection& project, const gltf::Model& model, const gltf::Part& part)
{
    const auto color = OnScreen(part, 1.0);
    for (std::uint32_t i = part.firstIndex; i + 1 < part.firstIndex + part.indexCount; i += 2)
        canvas.line(project(model.vertices[model.indices[i]].position),
                    project(model.vertices[model.indices[i + 1]].position), color, part.color[3]);
}

void DrawParts(Canvas& canvas, const Projection& project, const View& view, const gltf::Model& model,
               bool isOpaquePass)
{
    for (const auto& part : model.parts) {
        if ((part.color[3] >= 1.0F) != isOpaquePass)
            continue;
        if (part.isLines) {
            DrawLines(canvas, project, model, part);
            continue;
        }
        for (std::uint32_t i = part.firstIndex; i + 2 < part.firstIndex + part.indexCount; i += 3) {
            const auto& a = model.vertices[model.indices[i]];
            const auto& b = model.vertices[model.indices[i + 1]];
            const auto& c = model.vertices[model.indices[i + 2]];
            Vector3 normal{};
            for (std::size_t axis = 0; axis < 3; ++axis)
                normal[axis] = (a.normal[axis] + b.normal[axis] + c.normal[axis]) / 3.0F;
            if (Dot(normal, view.towards) < 0.0)
                normal = {-normal[0], -normal[1], -normal[2]};
            canvas.fill(project(a.position), project(b.position), project(c.position), Lit(part, normal),
                        part.color[3]);
        }
    }
}

} // namespace

QImage DrawPicture(std::span<const gltf::Model* const> models, const QSize& size)
{
    const View view;
    Canvas canvas(size.width() * samples, size.height() * samples);
    const Projection project(view, models, size.width() * samples, size.height() * samples);
    for (const bool isOpaquePass : {true, false}) {
        for (const auto* model : models)
            DrawParts(canvas, project, view, *model, isOpaquePass);
    }
    return canvas.image();
}

} // namespace kyvconvert
