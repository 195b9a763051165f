// telvane-sim.exe starts ready for a first job: the sample mask and line file in the data
// folder, the lamp and the live view on, so the virtual sample shows at once.
#include "app/command_dispatch.h"
#include "app/sample_job.h"
#include "app/startup.h"
#include "resources/resource.h"
#include "station/data_paths.h"

void startFirstJob() {
  placeSampleJob(dataPaths.dataFolder);
  dispatchCommand(IDC_ILLUMINATION_ON);
  dispatchCommand(IDC_VIDEO_ON);
}
