#include "gige/assembly/StreamAccount.h"

namespace OvGige {

void StreamAccount::Reset() {
    for (Count* const count :
         {&complete, &incomplete, &noBuffer, &lostOnWire, &lostInSocket, &leftOut, &restarts, &used,
          &doubled, &refused, &ignored, &asked, &answered, &missing, &dropped}) {
        count->Reset();
    }
}

}  // namespace OvGige
