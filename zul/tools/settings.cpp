#include "zul/tools/settings.h"

namespace zul {

bool AnswerSetting(const TSettings& settings, CAnyObject& tool, CMessage& message) {
    const std::int32_t code = message.GetCode();
    for (const TSetting& setting : settings) {
        if (setting.Form == TSettingForm::Text) continue;
        if (code == setting.Code) {
            message.SetResult(setting.Access.Get(tool).Number);
            return true;
        }
        if (code == setting.Code + 1) {
            const std::int64_t param = message.GetParam1();
            const bool isFlag = setting.Form == TSettingForm::Flag;
            setting.Access.Set(tool, {isFlag ? param != 0 : WrapToLong(param)});
            return true;
        }
    }
    return false;
}

}  // namespace zul
