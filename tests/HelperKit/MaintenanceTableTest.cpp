#include "HelperKit/MaintenanceTable.h"

#include <gtest/gtest.h>

namespace vh::helper {

TEST(MaintenanceTable, ARestartIsOnNoMenu) {
    EXPECT_EQ(listedTasks().size(), allCases<MaintenanceTask>().size() - 1);
}

} // namespace vh::helper
