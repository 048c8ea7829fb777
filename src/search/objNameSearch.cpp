#include "search/objNameSearch.h"

#include "server/IgnoringErrors.h"
#include "server/TextNumbers.h"

#include <exception>
#include <utility>

namespace kintar::search {
namespace {

std::string dialogCaption(modGlobals& globals) {
    const std::string text =
        globals.gSys ? globals.gSys->GetText(textNumber::searchNames) : std::string();
    return text.empty() ? "Search Names" : text;
}

} // namespace

objNameSearch::objNameSearch(NameSearchSurroundings& surroundings, Place& place,
                             ObjectSignals& signals)
    : surroundings_(surroundings), globals_(surroundings.globals), place_(place) {
    globals_.addInstance();
    try {
        surroundings_.application.runPendingWindowMessages();
        imageTypes_.LoadDefaultImageTypes({globals_.tarnRec(), globals_.gCnn()});
    } catch (const std::exception&) {
        terminate();
        throw;
    }
    changes_ = globals_.nameSearch.changed.add(
        [&signals](std::string_view member) { signals.changed(member); });
    prints_ = globals_.nameSearch.printEnded.add(
        [&signals](std::int16_t request, const std::string& error) {
            signals.signal("PrintEnded", {request, error});
        });
}

objNameSearch::~objNameSearch() {
    terminate();
}

void objNameSearch::terminate() {
    ignoringErrors([this] { globals_.forms.unload(FormId::frmInOut); });
    ignoringErrors([this] { place_.unload(); });
    ignoringErrors([this] { globals_.removeInstance(); });
}

void objNameSearch::LocGrp(std::int32_t value, Completion completion) {
    try {
        open(value);
    } catch (const RunTimeError& error) {
        completion(error);
        return;
    }
    place_.get().bringForward([completion = std::move(completion)] { completion(std::nullopt); });
}

void objNameSearch::open(std::int32_t locGrp) {
    frmNameSearch& form = place_.get();
    form.NameSelMode(mode_);
    form.LocGrp(locGrp);
    form.OprID(oprId_);
    form.ImageType(imageTypes_.of(locGrp));
    form.Hide();
    form.setCaption(locName_ + ":  " + dialogCaption(globals_));
    form.CanViewUDF();
    form.applyMode();
    form.Show();
}

std::int32_t objNameSearch::SelNameID() const {
    return globals_.nameSearch.SelNameID();
}

std::string objNameSearch::SelName() const {
    return globals_.nameSearch.SelName();
}

bool objNameSearch::SelNameReady() const {
    return globals_.nameSearch.SelNameReady();
}

void objNameSearch::PrintStatus() {
    place_.get().PrintStatusRpt();
}

void objNameSearch::PrintWhoIsIn(std::int32_t loc) {
    place_.get().PrintWhoIsIn(loc);
}

PublicClass objNameSearch::describe(NameSearchSurroundings& surroundings, Place& place) {
    return ClassBuilder<objNameSearch>("objNameSearch",
                                       "Asks an operator to pick a cardholder's name, and prints "
                                       "two reports.")
        .letLater("LocGrp", &objNameSearch::LocGrp,
                  "The location group to search in. Setting it opens the dialog: set the other "
                  "inputs first. A group without a default image type raises error 5.")
        .let("LocName", &objNameSearch::LocName, "The name shown at the start of the caption.")
        .let("OprID", &objNameSearch::OprID, "The operator who uses the dialog.")
        .let("NameSelMode", &objNameSearch::NameSelMode,
             "Below 1 the dialog is for browsing, 1 for picking a name, 2 for picking one that "
             "owns a guard-tour card.")
        .get("SelNameID", &objNameSearch::SelNameID,
             "The number of the chosen name; 0 after Cancel.", true)
        .get("SelName", &objNameSearch::SelName, "The chosen name; empty after Cancel.", true)
        .get("SelNameReady", &objNameSearch::SelNameReady,
             "True once the dialog has been closed by OK, Cancel or In/Out. Wait for the change "
             "signal that follows your own LocGrp: a first read may still tell of the dialog "
             "before.",
             true)
        .method("PrintStatus", &objNameSearch::PrintStatus, {},
                "Asks for the card status report to be printed; returns at once.")
        .method("PrintWhoIsIn", &objNameSearch::PrintWhoIsIn, {"Loc"},
                "Asks for the who-is-in report of a location to be printed; returns at once.")
        .signal("PrintEnded",
                {{"request", ValueType::Int16, false}, {"error", ValueType::String, false}},
                "A print request has ended: 1 the card status report, 2 who is in. The error is "
                "empty where it was printed. The window that prints is shared: the creator of "
                "every object is told, of every client's requests. What comes before the answer "
                "to the call that asked is the end of another request.")
        .creates([&](ObjectSignals& signals) {
            return std::make_unique<objNameSearch>(surroundings, place, signals);
        })
        .build();
}

} // namespace kintar::search
