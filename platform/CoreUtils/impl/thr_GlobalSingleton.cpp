#include "thr_GlobalSingleton.h"

#include "thr_ThreadRecord.h"

thr_ThrSingletonRegistry& thr_GlobalSingleton::Instance() {
    return thr_ThreadRecord::Get().Registry();
}
