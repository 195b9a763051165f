// The main window's commands for the laser and lamp switches, the stage position boxes
// and buttons, the Mount/Wafer lift and reopening the controller port: one handler per
// command id, called by the command dispatch.
#pragma once

void onLaserOnCommand();           // 3000
void onLaserOffCommand();          // 3001
void onIlluminationOnCommand();    // 3105
void onIlluminationOffCommand();   // 3106
void onReadPositionCommand();      // 2009 "Position (um)"
void onStepPlusCommand();          // 2013 "+": axis 0, as the station always had it
void onStepMinusCommand();         // 2014 "-"
void onMoveXCommand();             // 4003
void onMoveYCommand();             // 4004
void onMoveZCommand();             // 4005
void onMountCommand();             // 32001
void onWaferCommand();             // 32002
void onReopenControllerCommand();  // 32810
