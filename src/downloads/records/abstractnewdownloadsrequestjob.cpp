#include "abstractnewdownloadsrequestjob.h"

QVariantHash toVariantHash(const AbstractNewDownloadsRequestJob &job)
{
    return toVariantHash(job.request);
}
