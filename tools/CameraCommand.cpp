// The command that makes a camera's file.
#include "CameraCommand.h"

#include "Error.h"
#include "RenderPlan.h"
#include "TemporaryFile.h"
#include "camera/Calibration.h"
#include "camera/CameraFile.h"
#include "media/Pixels.h"

namespace lumofe {

void initCamera(const CameraOptions& options)
{
    if (options.size.has_value() == !options.calibration.empty())
        throw Error(options.size ? "--size: the calibration tells it; leave out one of the two"
                                 : "--size: is missing; give the input's size, or --calibration");
    checkAbsent(options.path, options.force);

    CameraFile camera;
    if (options.size) {
        camera.input = evenSize(*options.size);
        camera.circle = centredCircle(camera.input);
    } else {
        const Calibration found = readCalibration(options.calibration);
        if (!found.confident && !options.circle)
            throw Error(options.calibration +
                        ": the circle that was found is not certain; give it with --circle");
        camera.input = evenSize(found.input);
        camera.circle = found.circle;
    }
    camera.circle = options.circle.value_or(camera.circle);
    camera.mount = options.mount;
    camera.layout = options.view;
    writeCameraFile(options.path, camera);
}

} // namespace lumofe
