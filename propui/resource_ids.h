#pragma once

// Also read by the resource compiler: nothing but preprocessor definitions.

#define SELVANE_TITLE_EXPOSURE 101
#define SELVANE_TITLE_FEATURE 102
#define SELVANE_TITLE_LENS 103
#define SELVANE_TITLE_COLOR 104
#define SELVANE_DIALOG_PAGE 105

#define SELVANE_NAME_EXPOSURE "Selvane Exposure Controls"
#define SELVANE_NAME_FEATURE "Selvane Feature Controls"
#define SELVANE_NAME_LENS "Selvane Lens Controls"
#define SELVANE_NAME_COLOR "Selvane Color Controls"
