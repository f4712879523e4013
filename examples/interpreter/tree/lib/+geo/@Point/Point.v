classdef Point
