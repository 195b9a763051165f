// Resource ids of Telvane, grouped by prefix and number range. Read by the resource
// compiler and by the C++ sources alike, so only plain #define lines live here.
//   IDS_  string table         103, 109
//   IDD_  dialogs              103, 130, 138
//   IDR_  menu, accelerators   109
//   IDI_  icons                137
//   IDM_  menu commands        104-105, 4000, 32794-32835
//   IDC_  main-window controls 2002-2207, 3000-3106, 4003-4007, 32000-32002
//   IDC_WCFG_  controls of the Writing Configuration dialog (130)   1-2, 913-1227
//   IDC_DCFG_  controls of the Device Configuration dialog (138)    1-2, 900-1101
#pragma once

// String table.
#define IDS_APP_TITLE 103
#define IDS_WINDOW_CLASS 109

// Dialogs.
#define IDD_ABOUTBOX 103
#define IDD_WRITING_CONFIGURATION 130
#define IDD_DEVICE_CONFIGURATION 138

// Menu and accelerator table of the main window.
#define IDR_MAIN_MENU 109
#define IDR_MAIN_ACCELERATORS 109

// Icons.
#define IDI_TELVANE 137

// Menu commands.
#define IDM_ABOUT 104
#define IDM_EXIT 105
#define IDM_BLACK_TAPE_TEST 4000
#define IDM_FIND_EDGES 32794
#define IDM_STOP 32802
#define IDM_SAVE_IMAGE 32804
#define IDM_GROUPING 32806
#define IDM_MASK_PATTERN 32807  // also the "Mask" button
#define IDM_CAMERA_AUTO_SETTING 32809
#define IDM_REOPEN_CONTROLLER 32810  // no menu entry
#define IDM_IMPORT_IMAGE 32812
#define IDM_SHOW_TARGET_PATTERN 32813
#define IDM_SIMULATE_WRITING 32814
#define IDM_FINAL_PATTERN 32816
#define IDM_CAMERA_BLUE_ONLY 32817
#define IDM_DELETE_ALL_LINES 32818
#define IDM_START_VECTOR_WRITING 32819
#define IDM_DEVICE_CONFIGURATION 32820
#define IDM_WRITING_CONFIGURATION 32821
#define IDM_IMPORT_LINE_PATTERNS 32823
#define IDM_IMPORT_ALIGNMENT_MARK 32824
#define IDM_PR_TEST 32829
#define IDM_APPLY_GAIN_EXPOSURE 32830  // Enter in "Gain" or "Expo."
#define IDM_ERASE_MASK_PATTERN 32832
#define IDM_LONG_STROKE_TEST 32833
#define IDM_FORECAST_WRITING 32835
#define IDM_SHOW_EXPOSURE_PICTURE 32834

// Controls of the main window. Boxes and labels without a function have id 0, and the
// progress and time boxes share 2006 (they are reached by their handles).
#define IDC_WRITING_SPEED_BOX 2002
#define IDC_PROGRESS_BOX 2006
#define IDC_POSITION_READ 2009
#define IDC_STEP_PLUS 2013
#define IDC_STEP_MINUS 2014
#define IDC_ZOOM_IN 2100
#define IDC_ZOOM_OUT 2101
#define IDC_CAMERA_CAPTURE 2102
#define IDC_STATUS_BOX 2103
#define IDC_SHOW 2104
#define IDC_LINE_WIDTH_1 2105  // the "Draw Line (um)" radio group, 2105..2109
#define IDC_LINE_WIDTH_3 2106
#define IDC_LINE_WIDTH_6 2107
#define IDC_LINE_WIDTH_10 2108
#define IDC_LINE_ERASE 2109
#define IDC_VIDEO_ON 2112
#define IDC_VIDEO_OFF 2113
#define IDC_BLINK 2117
#define IDC_BLINK_BOX 2118
#define IDC_ALIGN_MARK 2120
#define IDC_CENTER_WRITING_ONLY 2121
#define IDC_SHOW_MASK_FILE 2130  // no control
#define IDC_ALL 2140
#define IDC_WIDE_VIEW 2150
#define IDC_MASK_LAYER 2200
#define IDC_LINES_LAYER 2201
#define IDC_START_WRITING 2202
#define IDC_MARK_LAYER 2203
#define IDC_GO_TO_WRITING 2205
#define IDC_DX_BOX 2206
#define IDC_DY_BOX 2207
#define IDC_LASER_ON 3000
#define IDC_LASER_OFF 3001
#define IDC_ILLUMINATION_ON 3105
#define IDC_ILLUMINATION_OFF 3106
#define IDC_WRITING_SPEED_ENTER 4001  // sent by Enter in 2002; nothing handles it
#define IDC_MOVE_X 4003
#define IDC_MOVE_Y 4004
#define IDC_MOVE_Z 4005
#define IDC_APPLY_DX 4006
#define IDC_APPLY_DY 4007
#define IDC_FOCUS 32000
#define IDC_MOUNT 32001
#define IDC_WAFER 32002

// Controls of the Writing Configuration dialog, "Configuration" (130).
#define IDC_WCFG_SET 1   // IDOK: the dialog stays open
#define IDC_WCFG_DONE 2  // IDCANCEL: Esc and the close box end the dialog as "Done" does
#define IDC_WCFG_APPLY 913
#define IDC_WCFG_LINE_DRAWING 1002
#define IDC_WCFG_SHUTTER 1004
#define IDC_WCFG_INSIDE_VOLTAGE 1006
#define IDC_WCFG_POSITION_X 1007
#define IDC_WCFG_LASER_SHIFT_X 1008
#define IDC_WCFG_OUTSIDE_VOLTAGE 1009
#define IDC_WCFG_STEP_MINUS_X 1010
#define IDC_WCFG_STEP_PLUS_X 1011
#define IDC_WCFG_POSITION_Y 1012
#define IDC_WCFG_STEP_MINUS_Y 1013
#define IDC_WCFG_STEP_PLUS_Y 1014
#define IDC_WCFG_STEP 1015
#define IDC_WCFG_LASER_SHIFT_Y 1016
#define IDC_WCFG_LASER_SHIFT_Z 1017
#define IDC_WCFG_INSIDE_SPEED 1018
#define IDC_WCFG_OUTSIDE_SPEED 1019
#define IDC_WCFG_MAGNIFICATION 1020
#define IDC_WCFG_OUTSIDE_SUBFACTOR 1021
#define IDC_WCFG_LINE1_SPEED 1022
#define IDC_WCFG_DEFOCUS 1023
#define IDC_WCFG_LINE3_SPEED 1024
#define IDC_WCFG_LINE6_SPEED 1025
#define IDC_WCFG_WRITING_AREA 1029
#define IDC_WCFG_GO 1100
#define IDC_WCFG_LINE10_SPEED 1126
#define IDC_WCFG_LINE_VOLTAGE 1227

// Controls of the Device Configuration dialog (138).
#define IDC_DCFG_SET 1    // IDOK: sends the command box, as "Send"
#define IDC_DCFG_CLOSE 2  // IDCANCEL: Esc and the close box close as "Close" does
#define IDC_DCFG_CAMERA_CONNECTED 900
#define IDC_DCFG_MOVE_TO_BOX 903
#define IDC_DCFG_PORT 1000
#define IDC_DCFG_COMMAND 1001
#define IDC_DCFG_ANSWER 1002
#define IDC_DCFG_PORT_CONNECTED 1004
#define IDC_DCFG_STANDA_CONNECTED 1005
#define IDC_DCFG_PORT_INITIALIZE 1008
#define IDC_DCFG_SEND 1009
#define IDC_DCFG_RECEIVE 1011
#define IDC_DCFG_DOWN 1012
#define IDC_DCFG_CLOSE_PORT 1013  // no control
#define IDC_DCFG_MOVE_TO 1014
#define IDC_DCFG_STANDA_MOTOR1 1029
#define IDC_DCFG_STANDA_MOTOR2 1030
#define IDC_DCFG_STANDA_MOTOR3 1031
#define IDC_DCFG_UP 1032
#define IDC_DCFG_CAMERA_INITIALIZE 1033
#define IDC_DCFG_STANDA_INITIALIZE 1100
#define IDC_DCFG_ZERO_POINT 1101

// Text lines of the about box.
#define IDC_ABOUT_NAME 1000
#define IDC_ABOUT_YEAR 1001

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif
