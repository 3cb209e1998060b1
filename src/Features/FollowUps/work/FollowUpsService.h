#pragma once

#include "Automation/Service.h"
#include "Features/FollowUps/work/RunFollowUps.h"

namespace vh::automation {

class Automation;

/// Reports and mails after the runs of this process. Main thread but for `take`.
class FollowUpsService : public Service {
public:
    explicit FollowUpsService(Automation& automation);

    RunFollowUps& followUps() { return followUps_; }

    std::string_view name() const override { return "follow-ups"; }
    void take(const RunRecord& record) override { followUps_.take(record); }
    void finish(std::chrono::milliseconds limit) override { followUps_.finish(limit); }

private:
    RunFollowUps followUps_;
};

} // namespace vh::automation
