#include "apps/desk/picture/Camera.h"

#include <algorithm>

namespace orvel::desk::picture {

Camera Camera::fit(const QRectF& box, const QRectF& area)
{
    Camera camera;
    const double across = box.width() > 0.0 ? area.width() / box.width() : 0.0;
    const double down = box.height() > 0.0 ? area.height() / box.height() : 0.0;
    if (across > 0.0 && down > 0.0)
        camera.scale = std::min(across, down);
    else
        camera.scale = std::max({across, down, 1e-9});
    camera.shift = area.center() - box.center() * camera.scale;
    return camera;
}

void Camera::zoom(double factor, const QPointF& fixedPlace)
{
    shift = fixedPlace - (fixedPlace - shift) * factor;
    scale *= factor;
}

} // namespace orvel::desk::picture
