#pragma once

#include <QPrinter>

#include <algorithm>
#include <array>

// How pictures are printed, chosen in the page-setup dialog and kept for the run only: every
// start begins with landscape, the original size, the first paper source and one copy.
struct PageSetup
{
    // 0: 1 for portrait, 0 for landscape; 1: 1 to stretch to fit, 0 for the original size;
    // 2: the paper source's index in PaperSources; 3: the number of copies minus 1.
    std::array<qint32, 4> Values{};
    // Centre the picture on the page rather than at its top left. The dialog's box always opens
    // unticked; its OK sets this for the prints that follow.
    bool Center = false;

    bool Portrait() const { return Values[0] != 0; }
    bool Stretch() const { return Values[1] != 0; }
    // Auto for an index outside the list.
    QPrinter::PaperSource PaperSource() const;
    // An empty copies box is stored as no copies; a print still makes one.
    int Copies() const { return int(std::max<qint64>(1, qint64(Values[3]) + 1)); }

    struct PaperSourceEntry
    {
        const char* text;
        QPrinter::PaperSource source;
    };
    // Qt names a printer's trays on Windows only, so the list is fixed: an index stored in the
    // run means the same tray whichever printer is picked in the print dialog.
    static constexpr std::array<PaperSourceEntry, 10> PaperSources{{
        {"Automatically Select", QPrinter::Auto},
        {"Upper tray", QPrinter::Upper},
        {"Middle tray", QPrinter::Middle},
        {"Lower tray", QPrinter::Lower},
        {"Manual feed", QPrinter::Manual},
        {"Envelope", QPrinter::Envelope},
        {"Envelope manual feed", QPrinter::EnvelopeManual},
        {"Tractor feed", QPrinter::Tractor},
        {"Large capacity tray", QPrinter::LargeCapacity},
        {"Cassette", QPrinter::Cassette},
    }};

    // The program's choices.
    static PageSetup& Current();
};
