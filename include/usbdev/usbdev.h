/* The whole interface of libusbdevlib. */
#ifndef USBDEV_USBDEV_H
#define USBDEV_USBDEV_H

#include <usbdev/core.h>
#include <usbdev/devices.h>
#include <usbdev/hostinfo.h>
#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>
#include <usbdev/records.h>
#include <usbdev/web.h>

#endif
