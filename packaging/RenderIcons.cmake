# cmake -DRENDER=... -DSVG=... -DOUT=... -DCONTEXT=apps -DNAME=... -DSIZES="16;32" -P RenderIcons.cmake
# Draws one SVG into OUT/<size>x<size>/CONTEXT/NAME.png for every size.
foreach(size ${SIZES})
  file(MAKE_DIRECTORY ${OUT}/${size}x${size}/${CONTEXT})
endforeach()
execute_process(COMMAND ${RENDER} ${SVG} ${OUT}/%1x%1/${CONTEXT}/${NAME}.png ${SIZES}
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "Cannot draw ${SVG}: ${result}")
endif()
