#pragma once

#include <memory>
#include <span>

class QObject;

namespace vh::app {

class AppContext;
class AutomationLife;

/// What a view-model is made of.
struct ViewParts {
    AppContext& context;
    AutomationLife& life;
};

/// A view-model, as pages ask for it: App.model("name").
struct ModelRow {
    const char* name;
    std::unique_ptr<QObject> (*make)(const ViewParts& parts);
};

template <class Model>
std::unique_ptr<QObject> makeModel(const ViewParts& parts) {
    return std::make_unique<Model>(parts.context, parts.life);
}

/// A page of the window.
struct PageRow {
    const char* page; ///< its identifier: a tool's, or one of the window's own
    const char* file; ///< in its feature's page/, without ".qml"
    /// The job, or the tool of the jobs, that counts as its own besides those of its identifier.
    const char* jobsOf = "";
};

/// A part of another page: the card of "home" (one), cards in "settings", what stands beside a review in "scan". The page
/// makes room for what is there and knows no name of it.
struct PartRow {
    const char* place;
    const char* file; ///< in its feature's page/, without ".qml"
};

/// What a tool or feature offers to the window: its view/Offer.cpp defines one, by the folder's name and "View" in the
/// namespace vh::features.
struct ViewOffer {
    std::span<const PageRow> pages = {};
    std::span<const ModelRow> models = {};
    std::span<const PartRow> parts = {};
};

/// Those of all features of the product, in its order.
std::span<const ViewOffer* const> viewOffers();

} // namespace vh::app
