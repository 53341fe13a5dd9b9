#include "editor/tools/fade_dialog.h"

#include "platform/platform.h"

using platform::FormWindow;

bool FadeDialog::Run() { return vPlatform->RunDialog(Layout(), *this) == platform::kIdOk; }

void FadeDialog::OnInit(FormWindow& form) {
    if (sets.empty()) {
        form.SetText(kFadeSetButton, "No fade sets");
        form.Enable(kFadeSetButton, false);
    } else {
        ShowSet(form, sets.front());
    }
    form.Enable(platform::kIdOk, CanPaint());
    ShowValues(form);
}

void FadeDialog::ShowSet(FormWindow& form, const FadeSet& set) {
    form.SetText(kFadeSetButton, "Set: " + platform::MenuText(set.name));
    UseSet(form, set.tiles);
}

void FadeDialog::UseSet(FormWindow& form, const FadeTiles& chosen) {
    tiles = chosen;
    form.Invalidate();
}

void FadeDialog::ChooseSet(FormWindow& form) {
    platform::Menu menu;
    for (const FadeSet& set : sets)
        menu.push_back(platform::Entry(platform::MenuText(set.name),
                                       kFadeMenuBase + static_cast<int>(menu.size())));
    menu.push_back(platform::Separator());
    menu.push_back(platform::Entry("&Cancel", 0));
    const int choice = form.TrackMenuBelow(kFadeSetButton, menu) - kFadeMenuBase;
    if (choice >= 0 && static_cast<std::size_t>(choice) < sets.size())
        ShowSet(form, sets[static_cast<std::size_t>(choice)]);
}

void FadeDialog::OnControl(FormWindow& form, int id) {
    switch (id) {
        case kFadeSetButton:
            ChooseSet(form);
            break;
        case platform::kIdOk: {
            if (!CanPaint()) break;
            const platform::WaitCursor wait;
            const HandleGuard h(vWorld->GetCurrentObject());
            vWorld->BackupTiles(h);
            Paint(form, h);
            form.EndDialog(platform::kIdOk);
            break;
        }
        case platform::kIdCancel:
            form.EndDialog(platform::kIdCancel);
            break;
        default:
            break;
    }
}

void FadeDialog::OnChange(FormWindow& form, int) { ShowValues(form); }
