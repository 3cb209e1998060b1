#include "Reports/ReportPdf.h"
