// The texts of the status numbers, in the order of the published table. Rows
// "Ivalid", without a colon, and -216 ahead of -221 stand as published.
#include "crypto/zels_status.h"

namespace tova_fw_builder {

namespace {

struct StatusText {
  ZelStatus status;
  const char* text;
};

constexpr StatusText kUnknown = {
    -216, "zelStsUnknownStatusCodeErr: Unknown status code"};

constexpr StatusText kTexts[] = {
    {-9999, "zelStsCpuNotSupportedErr: The target CPU is not supported"},
    {-9702, "No shared libraries were found in the Waterfall procedure"},
    {-9701, "No DLLs were found in the Waterfall procedure"},
    {-9700, "Error at loading of %s library"},
    {-1016,
     "zelStsQuadraticNonResidueErr: SQRT operation on quadratic non-residue "
     "value"},
    {-1015, "zelStsPointAtInfinity: Point at infinity is detected"},
    {-1014, "zelStsOFBSizeErr: Incorrect value for crypto OFB block size"},
    {-1013,
     "zelStsIncompleteContextErr: Crypto: set up of context is not complete"},
    {-1012, "zelStsCTRSizeErr: Incorrect value for crypto CTR block size"},
    {-1011, "zelStsEphemeralKeyErr: ECC: Invalid ephemeral key"},
    {-1010, "zelStsMessageErr: ECC: Invalid message digest"},
    {-1009, "zelStsShareKeyErr: ECC: Invalid share key"},
    {-1008, "zelStsIvalidPrivateKey ECC: Invalid private key"},
    {-1007, "zelStsOutOfECErr: ECC: Point out of EC"},
    {-1006, "zelStsECCInvalidFlagErr: ECC: Invalid Flag"},
    {-1005, "zelStsUnderRunErr: Error in data under run"},
    {-1004,
     "zelStsPaddingErr: Detected padding error indicates the possible data "
     "corruption"},
    {-1003, "zelStsCFBSizeErr: Incorrect value for crypto CFB block size"},
    {-1002, "zelStsPaddingSchemeErr: Invalid padding scheme"},
    {-1001,
     "zelStsBadModulusErr: Bad modulus caused a failure in module inversion"},
    kUnknown,
    {-221, "zelStsLoadDynErr: Error when loading the dynamic library"},
    {-15, "zelStsLengthErr: Incorrect value for string length"},
    {-14,
     "zelStsNotSupportedModeErr: The requested mode is currently not "
     "supported"},
    {-13,
     "zelStsContextMatchErr: Context parameter does not match the operation"},
    {-12, "zelStsScaleRangeErr: Scale bounds are out of range"},
    {-11,
     "zelStsOutOfRangeErr: Argument is out of range, or point is outside the "
     "image"},
    {-10, "zelStsDivByZeroErr: An attempt to divide by zero"},
    {-9, "zelStsMemAllocErr: Memory allocated for the operation is not enough"},
    {-8, "zelStsNullPtrErr: Null pointer error"},
    {-7,
     "zelStsRangeErr: Incorrect values for bounds: the lower bound is greater "
     "than the upper bound"},
    {-6, "zelStsSizeErr: Incorrect value for data size"},
    {-5, "zelStsBadArgErr: Incorrect arg/param of the function"},
    {-4, "zelStsNoMemErr: Not enough memory for the operation"},
    {-2, "zelStsErr: Unknown/unspecified error, -2"},
    {0, "zelStsNoErr: No errors"},
    {1, "zelStsNoOperation: No operation has been executed"},
    {2, "zelStsDivByZero: Zero value(s) for the divisor in the Div function"},
    {25,
     "zelStsInsufficientEntropy: Generation of the prime/key failed due to "
     "insufficient entropy in the random seed and stimulus bit string"},
    {36, "The CPU is not supported"},
    {51, "Wrong combination of features"},
    {53, "zelStsMbWarning: Error(s) in statuses array"},
};

}  // namespace

const char* zels_status_text(ZelStatus status) {
  for (const StatusText& row : kTexts) {
    if (row.status == status) return row.text;
  }
  return kUnknown.text;
}

}  // namespace tova_fw_builder
