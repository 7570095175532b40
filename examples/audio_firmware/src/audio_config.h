/* Limits of the modules, shared by the firmware's sources and the image
 * definition, which refers to these names. Values stand bare: the image
 * builder reads the number behind the name and no expression. */
#ifndef AUDIO_CONFIG_H
#define AUDIO_CONFIG_H

#define ALL_CORES_MASK 0x3
#define FIRST_CORE_MASK 1
#define MIXER_INSTANCES 4
#define REVERB_INSTANCES 2U

#endif
