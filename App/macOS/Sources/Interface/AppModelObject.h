#pragma once

#include "AppModel/AppModel.h"
#include "Interface/AccountsModel.h"
#include "Interface/UpcomingModel.h"
#include "Views/Bindings/ViewModel.h"

namespace Tinkra {

/// The application's model as views see it: keeps the properties in step with the model's, and does what the
/// user asks for. Windows and quitting are not its own: `showMain`, `closeWindow` and `quit` go to whoever
/// owns them.
class AppModelObject final : public ViewModel {
public:
    /// `style` is how the user writes times; `workspace` opens addresses and knows the user's name.
    AppModelObject(
        std::shared_ptr<AppModel> model, std::shared_ptr<System::Workspace> workspace, TimeStyle style);

private:
    void connectActions();
    void follow(AppModel::Property property);
    void showAlarms();
    void showAccounts();
    void showConfiguration();

    /// Says that a property has changed when it has.
    template <typename Value> void set(Value& field, Value value, void (ViewModel::*changed)())
    {
        if (field == value)
            return;
        field = std::move(value);
        Q_EMIT(this->*changed)();
    }

    std::shared_ptr<AppModel> m_model;
    std::shared_ptr<System::Workspace> m_workspace;
    TimeStyle m_style;
    UpcomingModel m_upcoming;
    AccountsModel m_accounts;
    System::Observation m_observation;
};

}
